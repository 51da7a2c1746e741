// Loads any file into a reader: nothing beyond the configuration may change, and a save must succeed. The
// first byte chooses the number of configurations; the rest is the file.
#include <algorithm>
#include <array>
#include <memory>

#include "core/state.h"
#include "fuzz/kept_readers.h"
#include "fuzz/memory_file.h"

namespace tavlyn::fuzz {
namespace {

constexpr std::array kConfigurations = {0, 1, 2, 11};  // 0: a plain reader

// The format bytes of all configurations; no file may change one.
std::array<std::uint8_t, kCfgSlots> FormatBytes() {
  std::array<std::uint8_t, kCfgSlots> bytes{};
  std::ranges::transform(EntryOfActDev().CfgSlot, bytes.begin(),
                         [](const tsCfgSlot& slot) { return slot.sFldSepData[0]; });
  return bytes;
}

KeptReaders::Readers AllReaders() {
  KeptReaders::Readers readers;
  for (const int configurations : kConfigurations) {
    readers.push_back(configurations == 0 ? sim::Reader::Plain() : sim::Reader::Plus(configurations));
    for (sim::Configuration& configuration : readers.back()->state.configurations) {
      configuration.working.separated[0] = 0x24;
      configuration.working.separated[3] = 4;
    }
  }
  return readers;
}

void LoadInto(std::size_t which, std::string_view text) {
  static KeptReaders kept(AllReaders());
  kept.Use(which);

  MemoryFile::Fill(text);
  const auto formatBytes = FormatBytes();
  Require(ReadDevCfgFmFile(MemoryFile::Path()) <= 1);
  Require(FormatBytes() == formatBytes);
  Require(WriteDevCfgToFile(MemoryFile::Path()) == 1);
  Require(ReadDevCfgFmFile(MemoryFile::Path()) <= 1);
  CheckTamperedFile(MemoryFile::Path(), 0);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  using namespace tavlyn::fuzz;
  LoadInto(data[0] % kConfigurations.size(), TextOf(data + 1, size - 1));
  return 0;
}
