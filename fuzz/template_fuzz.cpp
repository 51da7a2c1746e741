// Loads any file into a reader: nothing beyond the configuration may change, and a save must succeed. The
// first byte chooses the number of configurations; the rest is the file.
#include <algorithm>
#include <array>
#include <memory>

#include "core/state.h"
#include "fuzz/plugged_reader.h"

namespace tavlyn::fuzz {
namespace {

constexpr std::array kConfigurations = {0, 1, 2, 11};  // 0: a plain reader

// The format bytes of all configurations; no file may change one.
std::array<std::uint8_t, kCfgSlots> FormatBytes() {
  std::array<std::uint8_t, kCfgSlots> bytes{};
  std::ranges::transform(DevTable[0].CfgSlot, bytes.begin(),
                         [](const tsCfgSlot& slot) { return slot.sFldSepData[0]; });
  return bytes;
}

void LoadInto(int configurations, std::string_view text) {
  static const ScratchFile kFile;
  const auto reader = configurations == 0 ? sim::Reader::Plain() : sim::Reader::Plus(configurations);
  for (sim::Configuration& configuration : reader->state.configurations) {
    configuration.working.separated[0] = 0x24;
    configuration.working.separated[3] = 4;
  }
  const PluggedReader plugged(reader);

  kFile.Fill(text);
  const auto formatBytes = FormatBytes();
  Require(ReadDevCfgFmFile(kFile.Path()) <= 1);
  Require(FormatBytes() == formatBytes);
  Require(WriteDevCfgToFile(kFile.Path()) == 1);
  Require(ReadDevCfgFmFile(kFile.Path()) <= 1);
  CheckTamperedFile(kFile.Path(), 0);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  using namespace tavlyn::fuzz;
  LoadInto(kConfigurations[data[0] % kConfigurations.size()], TextOf(data + 1, size - 1));
  return 0;
}
