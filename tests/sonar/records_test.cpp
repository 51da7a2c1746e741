// The record exports, the LED flags and the calls that a sensor does not have.
#include "sonar/records.h"

#include <cstring>
#include <functional>

#include "tests/sonar/sensor.h"

namespace tavlyn::test {
namespace {

class SonarRecords : public SonarBench {
 protected:
  void TearDown() override {
    ExpectTraffic({});
    SonarBench::TearDown();
  }
};

TEST_F(SonarRecords, GetsNeedAReadAndAPlace) {
  tsSonarParms sonar{7, 7, 7, 7, 7, 7, 7, 7};
  tsWalkAwayParms away;
  tsWalkUpParms up;
  tsIdleParms idle;
  const std::vector<std::function<std::uint32_t(bool)>> gets = {
      [&](bool place) { return GetSonarParms(place ? &sonar : nullptr); },
      [&](bool place) { return GetWalkAwayParms(place ? &away : nullptr); },
      [&](bool place) { return GetWalkUpParms(place ? &up : nullptr); },
      [&](bool place) { return GetIdleParms(place ? &idle : nullptr); }};
  for (const auto& get : gets) {
    EXPECT_EQ(get(true), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x100002U);
    EXPECT_EQ(get(false), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x100001U);
  }
  EXPECT_EQ(sonar.PingRate, 7);
  Read();
  for (const auto& get : gets) {
    EXPECT_EQ(get(false), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x100001U);
    EXPECT_EQ(get(true), 1U);
    EXPECT_EQ(GetLastLibErr(), 0U);
  }
  EXPECT_EQ(sonar.LEDFlags, 5);
  EXPECT_EQ(sonar.PingRate, 300);
  EXPECT_EQ(sonar.MinDist, 14);
  EXPECT_EQ(sonar.StartDly, 7);
  EXPECT_EQ(away.KeyCount, 2);
  EXPECT_EQ(away.MinFltRepRate, 22);
  EXPECT_EQ(away.Key6Code, 28);
  EXPECT_EQ(up.InterKeyDelay, 16320);
  EXPECT_EQ(up.Reserved2, 0xC3);
  EXPECT_EQ(up.Key6Code, 48);
  EXPECT_EQ(idle.Reserved1, 0xD7);
  EXPECT_EQ(idle.SNBlankTm, 57);
}

TEST_F(SonarRecords, SetsStoreAndMakeDirty) {
  const tsSonarParms sonar = {1, 200, 3, 1, 15, 6, 7, 8};
  const tsWalkAwayParms away = {6, 64, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  const tsWalkUpParms up = {0, 16320, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
  const tsIdleParms idle = {0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF};
  Block().bParmsValid = 1;
  EXPECT_EQ(SetSonarParms(&sonar), 1U);
  EXPECT_EQ(Dirty(), 1U);
  EXPECT_EQ(SetWalkAwayParms(&away), 1U);
  EXPECT_EQ(Dirty(), 3U);
  EXPECT_EQ(SetWalkUpParms(&up), 1U);
  EXPECT_EQ(Dirty(), 7U);
  EXPECT_EQ(SetIdleParms(&idle), 1U);
  EXPECT_EQ(Dirty(), 15U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  tsWalkUpParms got;
  EXPECT_EQ(GetWalkUpParms(&got), 1U);
  EXPECT_EQ(std::memcmp(&got, &up, sizeof up), 0);
  EXPECT_EQ(Block().words[sonar::MaxDistS], 15);
  EXPECT_EQ(Block().words[sonar::Key6CodeWA], 16);
  EXPECT_EQ(Block().words[sonar::SNBlankTmI], 0xFFFF);
}

TEST_F(SonarRecords, NullSets) {
  for (const std::function<std::uint32_t()>& set : std::vector<std::function<std::uint32_t()>>{
           [] { return SetSonarParms(nullptr); }, [] { return SetWalkAwayParms(nullptr); },
           [] { return SetWalkUpParms(nullptr); }, [] { return SetIdleParms(nullptr); }}) {
    Entry().LastLibErr = 0;
    EXPECT_EQ(set(), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x200001U);
  }
  EXPECT_EQ(Dirty(), 0U);
}

struct WordRange {
  std::uint16_t tsSonarParms::*word;
  std::uint16_t least, most;
  std::uint32_t error;
};

TEST_F(SonarRecords, TheRangesOfTheSonarRecord) {
  const tsSonarParms good = {0, 300, 0, 20, 40, 0, 0, 0};
  for (const WordRange& range : {WordRange{&tsSonarParms::PingRate, 200, 1020, 0x201000},
                                 WordRange{&tsSonarParms::MinDist, 1, 59, 0x201001},
                                 WordRange{&tsSonarParms::MaxDist, 15, 72, 0x201002}}) {
    for (const std::uint16_t value : {range.least, range.most}) {
      tsSonarParms record = good;
      record.*range.word = value;
      EXPECT_EQ(SetSonarParms(&record), 1U) << value;
    }
    SetDirty(0);
    const SonarWords before = Block().words;
    for (const int value : {range.least - 1, range.most + 1, 0x8000, 0xFFFF}) {
      tsSonarParms record = good;
      record.*range.word = static_cast<std::uint16_t>(value);
      EXPECT_EQ(SetSonarParms(&record), 0U) << value;
      EXPECT_EQ(GetLastLibErr(), range.error) << value;
    }
    EXPECT_EQ(Block().words, before);
    EXPECT_EQ(Dirty(), 0U);
  }
  tsSonarParms bad = {0, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(SetSonarParms(&bad), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x201000U) << "the first one out of range";
  bad.PingRate = 300;
  EXPECT_EQ(SetSonarParms(&bad), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x201001U);
}

template <typename Parms>
void ExpectKeyRanges(std::uint32_t (*set)(const Parms*), std::uint32_t error) {
  Parms record{};
  for (const int count : {0, 6, 0x8000, 0xFFFF}) {
    record.KeyCount = static_cast<std::uint16_t>(count);
    record.InterKeyDelay = 64;
    EXPECT_EQ(set(&record), 1U) << count << ": compared signed";
  }
  for (const int count : {7, 0x7FFF}) {
    record.KeyCount = static_cast<std::uint16_t>(count);
    EXPECT_EQ(set(&record), 0U);
    EXPECT_EQ(GetLastLibErr(), error);
  }
  record.InterKeyDelay = 0;
  EXPECT_EQ(set(&record), 0U);
  EXPECT_EQ(GetLastLibErr(), error) << "the first one out of range";
  record.KeyCount = 1;
  for (const int delay : {0, 63, 16321, 0xFFFF}) {
    record.InterKeyDelay = static_cast<std::uint16_t>(delay);
    EXPECT_EQ(set(&record), 0U) << delay;
    EXPECT_EQ(GetLastLibErr(), error + 1) << delay;
  }
  record.InterKeyDelay = 16320;
  EXPECT_EQ(set(&record), 1U);
}

TEST_F(SonarRecords, TheRangesOfTheKeyRecords) {
  ExpectKeyRanges(SetWalkAwayParms, 0x201010);
  ExpectKeyRanges(SetWalkUpParms, 0x201020);
}

TEST_F(SonarRecords, LedFlagsAsARecord) {
  tsLEDCtrl leds = {9, 9, 9, 9, 9, 9, 9, 9};
  for (std::uint16_t flags = 0; flags < 8; ++flags) {
    Block().words[sonar::LEDFlagsS] = flags;
    EXPECT_EQ(GetLEDCtrl(&leds), 1U);
    EXPECT_EQ(leds.iRedLEDState, flags & 1);
    EXPECT_EQ(leds.bAppCtrlsLED, flags >> 1 & 1);
    EXPECT_EQ(leds.iGrnLEDState, flags >> 2 & 1);
    EXPECT_EQ(leds.bVolatile, 9);
    Block().words[sonar::LEDFlagsS] = 0x55;
    EXPECT_EQ(SetLEDCtrl(&leds), flags);
    EXPECT_EQ(Block().words[sonar::LEDFlagsS], flags);
  }
  for (const std::uint16_t flags : {std::uint16_t{8}, std::uint16_t{0x45}, std::uint16_t{0xFFFF}}) {
    Block().words[sonar::LEDFlagsS] = flags;
    leds = {9, 9, 9, 9, 9, 9, 9, 9};
    EXPECT_EQ(GetLEDCtrl(&leds), flags);
    EXPECT_EQ(leds.iRedLEDState | leds.iGrnLEDState | leds.bAppCtrlsLED, 0) << flags;
  }
  const tsLEDCtrl anyBits = {-1, 2, 4, 0, 0, 0, 0, 1};
  EXPECT_EQ(SetLEDCtrl(&anyBits), 7U);
  EXPECT_EQ(Dirty(), 0U);
  EXPECT_EQ(GetLEDCtrl(nullptr), 0U);
  EXPECT_EQ(SetLEDCtrl(nullptr), 0U);
}

TEST_F(SonarRecords, WhatASensorDoesNotHave) {
  SetUnsupportedProductErrorCode(0x8001);
  tsTimeParms time;
  EXPECT_EQ(GetTimeParms(&time), 0U);
  EXPECT_EQ(SetTimeParms(&time), 0U);
  tsCfgFlags flags;
  EXPECT_EQ(GetFlags(&flags), 0x8001U);
  EXPECT_EQ(SetFlags(&flags), 0x8001U);
  tsBprRlyCtrl beeper;
  EXPECT_EQ(GetBprRlyCtrl(&beeper), 0x8001U);
  EXPECT_EQ(BeepNow(1, 0), 0x8001U);
  EXPECT_EQ(Ping(), static_cast<std::uint32_t>(host.clock.tick));
  EXPECT_EQ(ReadDevTypeFromFile("none"), 0U);
  EXPECT_EQ(tavlynPlusDefaults(), 0x8001U);
  EXPECT_EQ(PlusBlockMove(1, 2), 0U);
  EXPECT_EQ(GetQueuedID(1, 1), 0U);
  EXPECT_EQ(GetQueuedID_index(1), 0U);
  EXPECT_EQ(SetRawPayload_index(8, 1), 0U);
  EXPECT_EQ(GetRawPayload_index(1), 0);
}

}  // namespace
}  // namespace tavlyn::test
