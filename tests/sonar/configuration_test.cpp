// The parameters and the identity, from and to the sensor.
#include "tests/sonar/model_bench.h"
#include "tests/sonar/sensor.h"

namespace tavlyn::test {
namespace {

using Words = std::vector<std::uint16_t>;

// All words of the mirror, in the order of the records.
Words WordsOf(const tsSonarBlock& block) { return {block.words.begin(), block.words.end()}; }

// The contents of FullReplies.
const Words kFullWords = {
    5,    300,   16, 14, 36,   5,  6,  7,                                       //
    2,    192,   11, 12, 13,   14, 15, 16, 0xA1, 22,   23, 24, 25, 26, 27, 28,  //
    6,    16320, 31, 32, 33,   34, 35, 36, 0xB2, 0xC3, 43, 44, 45, 46, 47, 48,  //
    0xD7, 51,    52, 53, 0xF4, 55, 56, 57,
};

class SonarParameters : public SonarBench {};

TEST_F(SonarParameters, AReadBringsEveryWord) {
  sensor->replies = FullReplies();
  Entry().LastLibErr = 4;
  Entry().bLUIDDirty = 1;
  SetDirty(15);
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectTraffic(FullRead());
  EXPECT_EQ(WordsOf(Block()), kFullWords);
  EXPECT_EQ(Block().bParmsValid, 1U);
  EXPECT_EQ(Dirty(), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(GetLUID(), 0x1234U);
  EXPECT_EQ(GetDID(), 0x5678U);
  EXPECT_EQ(Entry().bLUIDDirty, 0U);
}

TEST_F(SonarParameters, TheVersionWordHasOneNibbleOfEachByte) {
  Read();
  EXPECT_EQ(GetFirmwareVersion(0, 0), 0x5678U);
  EXPECT_EQ(GetFirmwareVersion(0, 1), 0xABCDU);
  EXPECT_EQ(GetFirmwareVersion(9, 1), 0xABCDU) << "of no processor in particular";
  EXPECT_EQ(GetFirmwareVersion(0, 2), 0U);
}

TEST_F(SonarParameters, TheShadowKeepsWhatCameWithoutLimits) {
  sensor->replies = {{0, 10, 0, 0, 255}, {}, {9, 0}, {}, {7, 0}, {}, {}, {}};
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(Block().words[sonar::PingRateS], 200);
  EXPECT_EQ(shared.sonarShadow[sonar::PingRateS], 40);
  EXPECT_EQ(shared.sonarShadow[sonar::MinDistS], 0);
  EXPECT_EQ(shared.sonarShadow[sonar::MaxDistS], 73);
  EXPECT_EQ(shared.sonarShadow[sonar::KeyCountWA], 9);
  EXPECT_EQ(shared.sonarShadow[sonar::InterKeyDelayWA], 0);
  EXPECT_EQ(shared.sonarShadow[sonar::KeyCountWU], 7);
}

TEST_F(SonarParameters, AReadThatFailsAnywhereIsToldAndKeepsWhatCame) {
  const Lines whole = [&] {
    sensor->replies = FullReplies();
    EXPECT_EQ(ReadCfg(), 1U);
    Lines traffic = TrafficOf(host.transcript.Events());
    std::erase(traffic, "sleep 250");
    return traffic;
  }();
  ASSERT_EQ(whole.size(), 14U);
  for (int at = 0; at < 14; ++at) {
    Block() = {};
    sensor->replies = FullReplies();
    sensor->Restart(at);
    ForgetTraffic();
    EXPECT_EQ(ReadCfg(), 0U) << at;
    const bool wasSent = whole[static_cast<std::size_t>(at)].starts_with("set");
    EXPECT_EQ(GetLastLibErr(), wasSent ? 0x20202U : 0x20000U) << at;
    EXPECT_EQ(Block().bParmsValid, at < 12 ? 0U : 1U) << at;
    EXPECT_EQ(Block().words[sonar::PingRateS], at < 2 ? 0 : 300) << at;
    EXPECT_EQ(Block().words[sonar::MinFltRepRate], at < 6 ? 0 : 22) << at;
    EXPECT_EQ(Block().words[sonar::SNBlankTmI], at < 12 ? 0 : 57) << at;
  }
}

TEST_F(SonarParameters, APartialReadLeavesValidityAndLimitsAlone) {
  Read();
  SetDirty(1);
  sensor->replies = {{0, 10}};
  sensor->Restart(2);
  EXPECT_EQ(ReadCfg(), 0U);
  EXPECT_EQ(Block().bParmsValid, 1U);
  EXPECT_EQ(Dirty(), 1U);
  EXPECT_EQ(Block().words[sonar::PingRateS], 40);
}

TEST_F(SonarParameters, AWriteOfNothingStillCommits) {
  Read();
  Entry().LastLibErr = 4;
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic({"set 90"});
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(SonarParameters, DirtyRecordsAreWrittenAndCommitted) {
  Read();
  const std::vector<Lines> groups = {
      Stored("80", "05 4B 10 31 7D 05 06 07"),
      Join({Stored("81", "02 03 0B 0C 0D 0E 0F 10"), Stored("82", "01 16 17 18 19 1A 1B 1C")}),
      Join({Stored("83", "06 FF 1F 20 21 22 23 24"), Stored("84", "02 C3 2B 2C 2D 2E 2F 30")}),
      Stored("85", "07 33 34 35 F4 37 38 39"),
  };
  const std::vector<unsigned> masks = {0x01, 0x06, 0x18, 0x20};
  for (unsigned dirty = 1; dirty < 16; ++dirty) {
    SetDirty(dirty);
    Lines expected;
    unsigned mask = 0;
    for (std::size_t group = 0; group < groups.size(); ++group) {
      if ((dirty >> group & 1) == 0) continue;
      expected = Join({expected, groups[group]});
      mask |= masks[group];
    }
    EXPECT_EQ(WriteCfg(), 1U);
    ExpectTraffic(Join({expected, {"set 90 " + sim::HexText({static_cast<std::uint8_t>(mask)})}}));
    EXPECT_EQ(Dirty(), 0U);
  }
}

TEST_F(SonarParameters, WordsLeaveAsLowBytesWithinTheirMasks) {
  Block().words.fill(0x1FF);
  Block().words[sonar::PingRateS] = 1019;
  Block().words[sonar::MinDistS] = 59;
  Block().words[sonar::MaxDistS] = 72;
  Block().words[sonar::InterKeyDelayWA] = 16319;
  Block().words[sonar::InterKeyDelayWU] = 127;
  shared.sonarShadow.fill(0x2E);
  SetDirty(15);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({Stored("80", "7F FE FF CD FA FF FF FF"),
                      Stored("81", "0F FE FF FF FF FF FF FF"),
                      Stored("82", "0F FF FF FF FF FF FF FF"),
                      Stored("83", "0F 01 FF FF FF FF FF FF"),
                      Stored("84", "0F 2E FF FF FF FF FF FF"),
                      Stored("85", "0E FF FF FF FF FF FF FF"),
                      {"set 90 3F"}}));
}

TEST_F(SonarParameters, TheReservedWordsAreThoseOfTheLastRead) {
  Read();
  tsWalkUpParms walkUp;
  tsIdleParms idle;
  EXPECT_EQ(GetWalkUpParms(&walkUp), 1U);
  EXPECT_EQ(GetIdleParms(&idle), 1U);
  walkUp.Reserved2 = 1;
  idle.Reserved1 = 1;
  EXPECT_EQ(SetWalkUpParms(&walkUp), 1U);
  EXPECT_EQ(SetIdleParms(&idle), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({Stored("83", "06 FF 1F 20 21 22 23 24"),
                      Stored("84", "02 C3 2B 2C 2D 2E 2F 30"),
                      Stored("85", "07 33 34 35 F4 37 38 39"),
                      {"set 90 38"}}));
}

TEST_F(SonarParameters, AChangedLuidGoesOutBehindTheCommit) {
  Read();
  SetLUID(0xABCD);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({{"set 90"}, Stored("8A", "00 CD AB")}));
  EXPECT_EQ(Entry().bLUIDDirty, 0U);

  SetLUID(0x0102);
  SetDirty(1);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join(
      {Stored("80", "05 4B 10 31 7D 05 06 07"), {"set 90 01"}, Stored("8A", "00 02 01 31 7D 05 06 07")}));
}

TEST_F(SonarParameters, AWriteThatFailsAnywhereStaysDirty) {
  Read();
  for (int at = 0; at < 15; ++at) {
    SetDirty(15);
    SetLUID(1);
    Entry().LastLibErr = 4;
    sensor->Restart(at);
    EXPECT_EQ(WriteCfg(), 0U) << at;
    EXPECT_EQ(GetLastLibErr(), 0x40202U) << at;
    EXPECT_EQ(Dirty(), at < 13 ? 15U : 0U) << at;
    EXPECT_EQ(Entry().bLUIDDirty, 1U) << at;
  }
  sensor->Restart(15);
  EXPECT_EQ(WriteCfg(), 1U);
}

TEST_F(SonarParameters, ReadsAndWritesAreLocked) {
  Read();
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(host.transcript.Lines().front(), "mutex lock");
  EXPECT_EQ(host.transcript.Lines().back(), "mutex unlock");
}

class SonarDefaults : public SonarBench {};

TEST_F(SonarDefaults, AFactoryResetReadsBack) {
  sensor->replies = FullReplies();
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  ExpectTraffic(Join({{"set A0", "sleep 2000"}, FullRead()}));
  EXPECT_EQ(Block().SonarOpMark, 1U);
  EXPECT_EQ(Block().words[sonar::FlagsI], 0xF4);
}

// Answers to two full reads by a sensor with that device ID.
std::deque<sim::Bytes> TwiceFrom(std::uint16_t did) {
  std::deque<sim::Bytes> replies = FullReplies();
  replies.back()[2] = static_cast<std::uint8_t>(did);
  replies.back()[3] = static_cast<std::uint8_t>(did >> 8);
  const std::deque<sim::Bytes> once = replies;
  replies.insert(replies.end(), once.begin(), once.end());
  return replies;
}

TEST_F(SonarDefaults, SensorsOfVersion040GetTheirIdleFlagsCleared) {
  for (const std::uint16_t did : {std::uint16_t{0x0400}, std::uint16_t{0x040F}}) {
    sensor->replies = TwiceFrom(did);
    StartTrace();
    ForgetTraffic();
    EXPECT_EQ(ResetFactoryDflts(), 1U);
    ExpectTraffic(Join({{"set A0", "sleep 2000"},
                        FullRead(),
                        Stored("85", "07 33 34 35 00 37 38 39"),
                        {"set 90 20"},
                        FullRead()}));
    ExpectTrace({"ResetFactoryDflts ENTER", "WriteCfg ENTER", "WriteCfg Success !!", "WriteCfg EXIT",
                 "ResetFactoryDflts EXIT"});
  }
  for (const std::uint16_t did : {std::uint16_t{0x03FF}, std::uint16_t{0x0410}, std::uint16_t{0x1400}}) {
    sensor->replies = TwiceFrom(did);
    EXPECT_EQ(ResetFactoryDflts(), 1U);
    ExpectTraffic(Join({{"set A0", "sleep 2000"}, FullRead()}));
  }
}

TEST_F(SonarDefaults, ClearingTheIdleFlagsMayFail) {
  for (const auto& [exchange, word] :
       {std::pair{16, 0x40202U}, std::pair{17, 0x40202U}, std::pair{18, 0x20202U}, std::pair{31, 0x20000U}}) {
    sensor->replies = TwiceFrom(0x0400);
    sensor->Restart(exchange);
    EXPECT_EQ(ResetFactoryDflts(), 0U) << exchange;
    EXPECT_EQ(GetLastLibErr(), word) << exchange;
  }
}

TEST_F(SonarDefaults, UserDefaultsComeBackAndAreSaved) {
  sensor->replies = FullReplies();
  EXPECT_EQ(ResetUserDflts(), 1U);
  ExpectTraffic(Join({{"set D0", "sleep 2000"}, FullRead()}));
  EXPECT_EQ(Block().SonarOpMark, 1U);
  Block().SonarOpMark = 0;
  sensor->replies = FullReplies();
  EXPECT_EQ(SaveUserDflts(), 1U);
  ExpectTraffic(Join({{"set E0", "sleep 2000"}, FullRead()}));
  EXPECT_EQ(Block().SonarOpMark, 0U);
}

struct Move {
  std::uint32_t (*run)();
  std::string request;
};

TEST_F(SonarDefaults, Failures) {
  for (const Move& move :
       {Move{ResetFactoryDflts, "A0"}, Move{ResetUserDflts, "D0"}, Move{SaveUserDflts, "E0"}}) {
    Entry().LastLibErr = 4;
    sensor->Restart(0);
    ForgetTraffic();
    EXPECT_EQ(move.run(), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x80202U);
    ExpectTraffic(Times(6, {"set " + move.request + " refused", "sleep 80"}));
    sensor->Restart(2);
    EXPECT_EQ(move.run(), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x20000U);
    ExpectTraffic({"set " + move.request, "sleep 2000", "set 80", "sleep 250", "get refused"});
  }
}

class SonarModelParameters : public SonarModelBench {};

TEST_F(SonarModelParameters, ASensorThatRepeatsItselfShowsItsFirstPageTwice) {
  sonar->state.repeatTurnsPage = false;
  sonar->state.working[0] = {0x05, 100, 3, 49, 208, 6, 7, 8};
  ConnectSonar();
  EXPECT_EQ(WalkAway().KeyCount, 5);
  EXPECT_EQ(WalkAway().InterKeyDelay, 6400);
  EXPECT_EQ(WalkAway().Key1Mods, 3);
  EXPECT_EQ(WalkAway().Key6Mods, 8);
}

TEST_F(SonarModelParameters, EveryDistanceComesBackAsItWent) {
  ConnectSonar();
  tsSonarParms record = Ranging();
  for (std::uint16_t inches = 15; inches <= 59; ++inches) {
    record.MinDist = inches;
    record.MaxDist = static_cast<std::uint16_t>(inches + 13);
    EXPECT_EQ(SetSonarParms(&record), 1U);
    EXPECT_EQ(WriteCfg(), 1U);
    EXPECT_EQ(sonar->state.stored[0][3], static_cast<std::uint8_t>(inches * 3.472222 + 0.5));
    EXPECT_EQ(ReadCfg(), 1U);
    EXPECT_EQ(Ranging().MinDist, inches);
    EXPECT_EQ(Ranging().MaxDist, inches + 13);
  }
  record.MinDist = 14;
  EXPECT_EQ(SetSonarParms(&record), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(sonar->state.stored[0][3], 49);
}

TEST_F(SonarModelParameters, AReadBringsValuesIntoTheirLimits) {
  ConnectSonar();
  struct Row {
    std::size_t page;
    std::size_t byte;
    std::uint8_t raw;
    int PingRate, MinDist, MaxDist, awayCount, awayDelay, upCount, upDelay;
  };
  const Row kRows[] = {
      {0, 1, 10, 200, 14, 60, 1, 64, 1, 64},     {0, 1, 49, 200, 14, 60, 1, 64, 1, 64},
      {0, 1, 50, 200, 14, 60, 1, 64, 1, 64},     {0, 1, 255, 1020, 14, 60, 1, 64, 1, 64},
      {0, 3, 0, 248, 1, 60, 1, 64, 1, 64},       {0, 3, 1, 248, 1, 60, 1, 64, 1, 64},
      {0, 3, 205, 248, 59, 60, 1, 64, 1, 64},    {0, 3, 255, 248, 59, 60, 1, 64, 1, 64},
      {0, 4, 0, 248, 14, 15, 1, 64, 1, 64},      {0, 4, 255, 248, 14, 72, 1, 64, 1, 64},
      {1, 0, 6, 248, 14, 60, 6, 64, 1, 64},      {1, 0, 7, 248, 14, 60, 0, 64, 1, 64},
      {1, 0, 9, 248, 14, 60, 0, 64, 1, 64},      {1, 1, 0, 248, 14, 60, 1, 64, 1, 64},
      {1, 1, 255, 248, 14, 60, 1, 16320, 1, 64}, {3, 0, 15, 248, 14, 60, 1, 64, 0, 64},
      {3, 0, 0xF6, 248, 14, 60, 1, 64, 6, 64},   {3, 1, 0, 248, 14, 60, 1, 64, 1, 64},
      {3, 1, 254, 248, 14, 60, 1, 64, 1, 16256},
  };
  for (const Row& row : kRows) {
    SCOPED_TRACE(std::to_string(row.page) + ' ' + std::to_string(row.byte) + ' ' + std::to_string(row.raw));
    sonar->state.working = sim::FactorySonarPages();
    sonar->state.working[row.page][row.byte] = row.raw;
    EXPECT_EQ(ReadCfg(), 1U);
    EXPECT_EQ(Ranging().PingRate, row.PingRate);
    EXPECT_EQ(Ranging().MinDist, row.MinDist);
    EXPECT_EQ(Ranging().MaxDist, row.MaxDist);
    EXPECT_EQ(WalkAway().KeyCount, row.awayCount);
    EXPECT_EQ(WalkAway().InterKeyDelay, row.awayDelay);
    EXPECT_EQ(WalkUp().KeyCount, row.upCount);
    EXPECT_EQ(WalkUp().InterKeyDelay, row.upDelay);
  }
}

TEST_F(SonarModelParameters, TheSensorTakesEveryWordThatIsNotReadOnly) {
  ConnectSonar();
  const Words before = WordsOf(EntryOfActDev().SonarBlock);
  ChangeAll();
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(ReadCfg(), 1U);
  const Words after = WordsOf(EntryOfActDev().SonarBlock);
  for (std::size_t word = 0; word < sonar::kWordCount; ++word) {
    const sonar::Field& field = sonar::kFields[word];
    EXPECT_EQ(after[word] == before[word], field.readOnly) << field.key;
  }
}

TEST_F(SonarModelParameters, TheLastReadOfAnySensorTellsWhatIsReserved) {
  auto other = std::make_shared<sim::Sonar>();
  sonar->state.working[4][1] = 1;
  other->state.working[4][1] = 2;
  Plug(sonar);
  Plug(other);
  SetDevTypeSrch(0);
  SetConnectProduct(4);
  EXPECT_EQ(USBConnect(nullptr), 1U);
  EXPECT_EQ(GetDevCnt(), 2);
  EXPECT_EQ(GetActDev(), 0);
  ChangeAll();
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(sonar->state.stored[4][1], 2);
}

TEST_F(SonarModelParameters, UserDefaultsAreSavedAndComeBack) {
  ConnectSonar();
  ChangeAll();
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(SaveUserDflts(), 1U);
  EXPECT_EQ(sonar->state.user, ChangedAsKept());
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  EXPECT_EQ(Ranging().MaxDist, 60);
  EXPECT_EQ(Idle().Flags, 0) << "of a sensor of version 0400";
  EXPECT_EQ(sonar->state.stored[5][4], 0);
  EXPECT_EQ(ResetUserDflts(), 1U);
  EXPECT_EQ(Ranging().MaxDist, 70);
  EXPECT_EQ(sonar->state.working, ChangedAsKept());
}

}  // namespace
}  // namespace tavlyn::test
