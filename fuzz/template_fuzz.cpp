// Any file, loaded into a reader: nothing may be touched beyond the configuration, and a save must follow.
// The first byte chooses the number of configurations; the rest is the file.
#include <algorithm>
#include <array>
#include <memory>

#include "api.h"
#include "core/front/load.h"
#include "core/state.h"
#include "fuzz/scratch_file.h"
#include "sim/carriers/virtual_host.h"
#include "sim/devices/reader.h"

namespace tavlyn::fuzz {
namespace {

constexpr std::array kConfigurations = {0, 1, 2, 11};  // 0: a plain reader

void LoadInto(int configurations, std::string_view text) {
  static const ScratchFile kFile;
  sim::VirtualHost& host = sim::VirtualHost::Instance();
  host.Reset();
  Load();
  const auto reader = configurations == 0 ? sim::Reader::Plain() : sim::Reader::Plus(configurations);
  for (sim::Configuration& configuration : reader->state.configurations) {
    configuration.working.separated[0] = 0x24;
    configuration.working.separated[3] = 4;
  }
  host.hid.Plug("reader", reader);
  SetDevTypeSrch(0);
  SetConnectProduct(1);
  Require(USBConnect(nullptr) == 1);

  kFile.Fill(text);
  const std::uint32_t result = ReadDevCfgFmFile(kFile.Path());
  Require(result <= 1);
  for (const tsCfgSlot& slot : DevTable[0].CfgSlot)
    Require(slot.sFldSepData[0] == 0 || slot.sFldSepData[0] == 0x24);
  Require(WriteDevCfgToFile(kFile.Path()) == 1);
  Require(ReadDevCfgFmFile(kFile.Path()) <= 1);
  CheckTamperedFile(kFile.Path(), 0);

  Unload();
  Require(host.Misuses().empty());
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  using namespace tavlyn::fuzz;
  LoadInto(kConfigurations[data[0] % kConfigurations.size()], TextOf(data + 1, size - 1));
  return 0;
}
