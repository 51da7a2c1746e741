// A sonar sensor that answers as it likes, then any file loaded into it. Three bytes set it up (how often it
// refuses, which calls are made, how many bytes are its answers); the rest is the file.
#include <algorithm>
#include <array>
#include <memory>

#include "core/state.h"
#include "fuzz/any_device.h"
#include "fuzz/connected.h"
#include "fuzz/memory_file.h"

namespace tavlyn::fuzz {
namespace {

bool Within(std::uint16_t value, int least, int most) { return value >= least && value <= most; }

void CheckRanges() {
  const SonarWords& words = DevTable[0].SonarBlock.words;
  Require(Within(words[sonar::PingRateS], 200, 1020));
  Require(Within(words[sonar::MinDistS], 1, 59));
  Require(Within(words[sonar::MaxDistS], 15, 72));
  Require(Within(words[sonar::InterKeyDelayWA], 64, 16320));
  Require(Within(words[sonar::InterKeyDelayWU], 64, 16320));
  Require(static_cast<std::int16_t>(words[sonar::KeyCountWA]) <= 6);
  Require(static_cast<std::int16_t>(words[sonar::KeyCountWU]) <= 6);
}

void Talk(std::uint8_t calls) {
  const auto wants = [calls](int bit) { return (calls >> bit & 1) == 0; };
  std::array<std::uint8_t, 32> id{};
  if (wants(0)) Require(GetActiveID32(id.data(), static_cast<std::int16_t>(id.size())) <= 4);
  std::array<std::uint16_t, 5> range{};
  if (wants(1)) GetObjRangeInfo(range.data());
  tsLEDCtrl leds;
  if (wants(2)) GetLEDCtrl(&leds);
  if (wants(3)) WriteCfg();
  if (wants(4)) ResetFactoryDflts();
  if (wants(5)) HaltKBSends(1);
}

void UseFile(std::string_view text) {
  MemoryFile::Fill(text);
  Require(ReadDevCfgFmFile(MemoryFile::Path()) == 1);
  Require(DevTable[0].LastLibErr == 0);
  CheckRanges();
  const SonarWords loaded = DevTable[0].SonarBlock.words;
  Require(WriteDevCfgToFile(MemoryFile::Path()) == 1);
  Require(ReadDevCfgFmFile(MemoryFile::Path()) == 1);
  Require(DevTable[0].SonarBlock.words == loaded);
}

void Meet(std::uint8_t refusals, std::uint8_t calls, std::span<const std::uint8_t> answers,
          std::string_view text) {
  sim::HidIdentity identity;
  identity.vid = 0x18C8;
  identity.pid = 0x2BFA;
  identity.usages = {{1, 6}};
  const Connected connected(4, std::make_shared<AnyDevice>(identity, refusals, answers));
  if (!connected.read) return;
  CheckRanges();
  UseFile(text);
  Talk(calls);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kSetUp = 3;
  if (size < kSetUp) return 0;
  const std::size_t answers = std::min<std::size_t>(data[2], size - kSetUp);
  tavlyn::fuzz::Meet(data[0], data[1], {data + kSetUp, answers},
                     tavlyn::fuzz::TextOf(data + kSetUp + answers, size - kSetUp - answers));
  return 0;
}
