// A device that answers as it likes. Three bytes set it up (which device, how often it refuses, which calls
// are made); the others are its answers, one after the other, and then it refuses everything.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>

#include "core/state.h"
#include "fuzz/any_device.h"
#include "fuzz/connected.h"

namespace tavlyn::fuzz {
namespace {

sim::HidIdentity ReaderIdentity(std::uint8_t kind) {
  const bool numbered = (kind & 1) != 0;
  sim::HidIdentity identity;
  identity.vid = 0x7A31;
  identity.pid = numbered ? 0x3BFB : 0x3BFA;
  identity.usages = {
      {static_cast<std::uint16_t>(numbered ? 0xFFA0 : 1), static_cast<std::uint16_t>(numbered ? 0xA000 : 6)}};
  identity.reportId = numbered ? 1 : 0;
  return identity;
}

void ReadIds() {
  std::array<std::uint8_t, 32> id{};
  for (const int length : {8, 32, 1, 0}) GetActiveID(id.data(), static_cast<std::int16_t>(length));
  sim::VirtualHost::Instance().clock.tick += 1000;
  GetActiveID32(id.data(), static_cast<std::int16_t>(id.size()));
  std::array<std::uint8_t, 8> small{};
  GetActiveID32(small.data(), static_cast<std::int16_t>(small.size()));
}

void ReadTexts() {
  for (const auto text : {GetSerialNumber, GetPlatformType, GetBuildDate, GetCopyrightInfo, GetCPUInfo})
    Require(std::string_view(text()).size() <= 24);
  Require(std::string_view(GetFWFilename()).size() <= 64);
  Require(std::string_view(GetFullFWVersion()).size() <= 24);
  Require(std::string_view(getPartNumberString()).size() <= 24);
  std::array<std::uint8_t, 32> number{};
  if (const std::uint8_t* esn = getESN(); esn != nullptr) std::copy_n(esn, number.size(), number.begin());
}

void UseFiles() {
  static const ScratchFile kFile;
  WriteDevCfgToFile(kFile.Path());
  Require(ReadDevCfgFmFile(kFile.Path()) <= 1);
}

// Reads every record of the analyzer's list in full.
void UseExtensions() {
  GetQueuedID(1, 1);
  for (std::int16_t index = -1; index <= 36; ++index) GetQueuedID_index(index);
  Require(std::string_view(SetRawPayload(0x8C, 0, 0, 0, 0, 0, 0, 0)).size() == 23);
  std::uint16_t state = 0;
  GetModuleState(1, &state);
  Require(state <= 1);
  Require(CheckTransparentMode() <= 2 && EnableTransparentMode(1) <= 2);
  const std::uint16_t ble = GetBTLEConfiguration();
  Require(ble <= 3 || ble == 65535);
  SetCardAnalyzerControlState(1);
  const std::uint32_t status = GetCardAnalyzerStatus();
  Require(status <= 255 || status == 0xFFFFFFFF);
  CardAnalyzerRecord* records = GetCardAnalyzerData();
  Require(records != nullptr);
  for (const CardAnalyzerRecord& record : std::span(records, GetCardCount())) {
    Require(record.RecType <= 0xFFFF && record.BitCount <= 0xFFFF);
    const std::size_t unused = 32 - std::min<std::size_t>((record.BitCount + 7) / 8, 32);
    Require(
        std::ranges::all_of(std::span(record.CardBits).first(unused), [](auto byte) { return byte == 0; }));
  }
  std::free(records);
}

void Talk(std::uint8_t calls) {
  const auto wants = [calls](int bit) { return (calls >> bit & 1) == 0; };
  if (wants(0)) ReadIds();
  if (wants(1)) ReadTexts();
  if (wants(2)) ReadCfg();
  if (wants(3)) WriteCfg();
  if (wants(4)) UseFiles();
  if (wants(5)) ResetFactoryDflts();
  if (wants(6)) GetBeeperVolume();
  if (wants(7)) UseExtensions();
  Require(DevTable[0].MaxConfig < kCfgSlots && DevTable[0].ActConfig < kCfgSlots);
}

void Meet(std::uint8_t kind, std::uint8_t refusals, std::uint8_t calls,
          std::span<const std::uint8_t> answers) {
  const Connected connected(1, std::make_shared<AnyDevice>(ReaderIdentity(kind), refusals, answers));
  if (connected.read) Talk(calls);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  tavlyn::fuzz::Meet(data[0], data[1], data[2], {data + 3, size - 3});
  return 0;
}
