// Parameters of a sonar sensor, read from, checked, and written to the model.
#include <cstring>

#include "tests/sonar/model_bench.h"

namespace tavlyn::test {
namespace {

class SonarModelParameters : public SonarModelBench {};

TEST_F(SonarModelParameters, AConnectReadsAllPages) {
  sonar->state.working = {{
      {0x85, 250, 12, 49, 208, 5, 6, 7},
      {0x36, 10, 1, 2, 3, 4, 5, 6},
      {0xF3, 9, 11, 12, 13, 14, 15, 16},
      {0x22, 3, 21, 22, 23, 24, 25, 26},
      {0xE5, 0xC7, 31, 32, 33, 34, 35, 36},
      {0xB1, 41, 42, 43, 0xC4, 45, 46, 47},
  }};
  sonar->state.luid = 0x1234;
  sonar->state.did = 0x0567;
  sonar->state.firmware = {0xF1, 0x32, 0x53, 0x74};
  Plug(sonar);
  SetDevTypeSrch(0);
  SetConnectProduct(4);
  std::uint32_t did = 0;
  EXPECT_EQ(USBConnect(&did), 1U);
  ExpectTraffic(ReadLines());
  EXPECT_EQ(did, 0x0567U);
  EXPECT_EQ(GetDevCnt(), 1);
  EXPECT_EQ(GetActDev(), 0);
  EXPECT_EQ(GetProduct(), 4U);
  EXPECT_EQ(GetDevType(), 0);
  EXPECT_EQ(GetLUID(), 0x1234U);
  EXPECT_EQ(GetDID(), 0x0567U);
  EXPECT_EQ(GetFirmwareVersion(7, 0), 0x0567U);
  EXPECT_EQ(GetFirmwareVersion(0, 1), 0x1234U) << "the low digits of its four bytes";
  EXPECT_EQ(GetFirmwareVersion(0, 2), 0U);
  EXPECT_EQ(GetLastLibErr(), 0U);

  const tsSonarParms ranging = Ranging();
  EXPECT_EQ(ranging.LEDFlags, 0x05) << "seven bits";
  EXPECT_EQ(ranging.PingRate, 1000);
  EXPECT_EQ(ranging.Reserved1, 12);
  EXPECT_EQ(ranging.MinDist, 14);
  EXPECT_EQ(ranging.MaxDist, 60);
  EXPECT_EQ(ranging.ORDBTm, 5);
  EXPECT_EQ(ranging.IRDBTm, 6);
  EXPECT_EQ(ranging.StartDly, 7);
  const tsWalkAwayParms away = WalkAway();
  EXPECT_EQ(away.KeyCount, 6) << "four bits";
  EXPECT_EQ(away.InterKeyDelay, 640);
  EXPECT_EQ(away.Key1Mods, 1);
  EXPECT_EQ(away.Key6Mods, 6);
  EXPECT_EQ(away.Flags0, 0xF3) << "taken whole";
  EXPECT_EQ(away.MinFltRepRate, 9);
  EXPECT_EQ(away.Key1Code, 11);
  EXPECT_EQ(away.Key6Code, 16);
  const tsWalkUpParms up = WalkUp();
  EXPECT_EQ(up.KeyCount, 2);
  EXPECT_EQ(up.InterKeyDelay, 192);
  EXPECT_EQ(up.Key1Mods, 21);
  EXPECT_EQ(up.Key6Mods, 26);
  EXPECT_EQ(up.Flags0, 0xE5);
  EXPECT_EQ(up.Reserved2, 0xC7);
  EXPECT_EQ(up.Key1Code, 31);
  EXPECT_EQ(up.Key6Code, 36);
  const tsIdleParms idle = Idle();
  EXPECT_EQ(idle.Reserved1, 0xB1);
  EXPECT_EQ(idle.PressRate, 41);
  EXPECT_EQ(idle.Key1Mods, 42);
  EXPECT_EQ(idle.Key1Code, 43);
  EXPECT_EQ(idle.Flags, 0xC4);
  EXPECT_EQ(idle.DMTODelta, 45);
  EXPECT_EQ(idle.DMTOTm, 46);
  EXPECT_EQ(idle.SNBlankTm, 47);
}

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

TEST_F(SonarModelParameters, GettersBeforeAnyRead) {
  SetDevTypeSrch(0);
  SetConnectProduct(4);
  Plug(sonar);
  sonar->faults.RefuseAt(2);
  EXPECT_EQ(USBConnect(nullptr), 0U);
  EXPECT_EQ(GetDevCnt(), 1) << "what was found stays";
  EXPECT_EQ(GetLastLibErr(), 0x20000U);
  tsSonarParms ranging{7, 7, 7, 7, 7, 7, 7, 7};
  EXPECT_EQ(GetSonarParms(&ranging), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x100002U);
  EXPECT_EQ(ranging.PingRate, 7);
  tsWalkAwayParms away{};
  EXPECT_EQ(GetWalkAwayParms(&away), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x100002U);
  tsWalkUpParms up{};
  EXPECT_EQ(GetWalkUpParms(&up), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x100002U);
  tsIdleParms idle{};
  EXPECT_EQ(GetIdleParms(&idle), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x100002U);
  EXPECT_EQ(GetIdleParms(nullptr), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x100001U) << "null is looked at first";
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(GetIdleParms(&idle), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(SonarModelParameters, NullRecords) {
  ConnectSonar();
  for (const bool get : {true, false}) {
    const std::uint32_t word = get ? 0x100001U : 0x200001U;
    EXPECT_EQ(get ? GetSonarParms(nullptr) : SetSonarParms(nullptr), 0U);
    EXPECT_EQ(GetLastLibErr(), word);
    EXPECT_EQ(get ? GetWalkAwayParms(nullptr) : SetWalkAwayParms(nullptr), 0U);
    EXPECT_EQ(GetLastLibErr(), word);
    EXPECT_EQ(get ? GetWalkUpParms(nullptr) : SetWalkUpParms(nullptr), 0U);
    EXPECT_EQ(GetLastLibErr(), word);
    EXPECT_EQ(get ? GetIdleParms(nullptr) : SetIdleParms(nullptr), 0U);
    EXPECT_EQ(GetLastLibErr(), word);
  }
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic({"set 90"});
}

TEST_F(SonarModelParameters, SetSonarParmsTestsItsRangesInTheirOrder) {
  ConnectSonar();
  const tsSonarParms before = Ranging();
  struct Row {
    std::uint16_t ping, least, most;
    std::uint32_t word;  // 0: it is taken
  };
  for (const Row& row : {Row{200, 1, 15, 0},
                         {1020, 59, 72, 0},
                         {199, 0, 0, 0x201000},
                         {1021, 14, 60, 0x201000},
                         {0xFFFF, 14, 60, 0x201000},
                         {300, 0, 0, 0x201001},
                         {300, 60, 60, 0x201001},
                         {300, 0x8001, 60, 0x201001},
                         {300, 14, 14, 0x201002},
                         {300, 14, 73, 0x201002},
                         {300, 14, 0xFFFF, 0x201002}}) {
    SCOPED_TRACE(std::to_string(row.ping) + ' ' + std::to_string(row.least) + ' ' + std::to_string(row.most));
    EXPECT_EQ(ReadCfg(), 1U);
    tsSonarParms record{1, row.ping, 3, row.least, row.most, 0xFFFF, 0x1234, 8};
    EXPECT_EQ(SetSonarParms(&record), row.word == 0 ? 1U : 0U);
    EXPECT_EQ(GetLastLibErr(), row.word);
    EXPECT_EQ(Ranging().PingRate, row.word == 0 ? row.ping : before.PingRate);
    EXPECT_EQ(Ranging().IRDBTm, row.word == 0 ? 0x1234 : before.IRDBTm);
    ForgetTraffic();
    sonar->state.working = sim::FactorySonarPages();
    EXPECT_EQ(WriteCfg(), 1U);
    EXPECT_EQ(TrafficOf(host.transcript.Events()).back(), row.word == 0 ? "set 90 01" : "set 90");
    sonar->state.working = sim::FactorySonarPages();
  }
}

TEST_F(SonarModelParameters, TheKeyRecordsTestTheirCountAndDelay) {
  ConnectSonar();
  struct Row {
    std::uint16_t count, delay;
    std::uint32_t low;  // of the word; 0: it is taken
  };
  for (const Row& row : {Row{0, 64, 0},
                         {6, 16320, 0},
                         {0x8000, 64, 0},  // the count is compared signed
                         {7, 0, 0x10},
                         {0x7FFF, 64, 0x10},
                         {6, 63, 0x11},
                         {6, 0, 0x11},
                         {6, 16321, 0x11},
                         {6, 0xFFFF, 0x11}}) {
    SCOPED_TRACE(std::to_string(row.count) + ' ' + std::to_string(row.delay));
    const std::uint32_t result = row.low == 0 ? 1 : 0;
    tsWalkAwayParms away{};
    away.KeyCount = row.count;
    away.InterKeyDelay = row.delay;
    EXPECT_EQ(SetWalkAwayParms(&away), result);
    EXPECT_EQ(GetLastLibErr(), row.low == 0 ? 0 : 0x201000 + row.low);
    tsWalkUpParms up{};
    up.KeyCount = row.count;
    up.InterKeyDelay = row.delay;
    EXPECT_EQ(SetWalkUpParms(&up), result);
    EXPECT_EQ(GetLastLibErr(), row.low == 0 ? 0 : 0x201010 + row.low);
  }
}

TEST_F(SonarModelParameters, SetIdleParmsTakesAnything) {
  ConnectSonar();
  tsIdleParms record;
  std::memset(&record, 0xFF, sizeof record);
  EXPECT_EQ(SetIdleParms(&record), 1U);
  EXPECT_EQ(Idle().SNBlankTm, 0xFFFF);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({PageLines(5, {0, 255, 255, 255, 255, 255, 255, 255}), {"set 90 20"}}));
}

TEST_F(SonarModelParameters, AWriteSendsWhatIsMarkedAndCommitsIt) {
  ConnectSonar();
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic({"set 90"});
  ChangeAll();
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(ChangedLines());
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(sonar->state.stored, ChangedAsKept());
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic({"set 90"});
}

TEST_F(SonarModelParameters, EachRecordTravelsAlone) {
  ConnectSonar();
  const tsSonarParms ranging{1, 300, 0, 20, 40, 1, 2, 3};
  EXPECT_EQ(SetSonarParms(&ranging), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({PageLines(0, {1, 75, 0, 69, 139, 1, 2, 3}), {"set 90 01"}}));
  tsWalkAwayParms away{};
  away.InterKeyDelay = 127;
  EXPECT_EQ(SetWalkAwayParms(&away), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({PageLines(1, {0, 1}), PageLines(2, {}), {"set 90 06"}}));
  tsWalkUpParms up{};
  up.InterKeyDelay = 128;
  EXPECT_EQ(SetWalkUpParms(&up), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({PageLines(3, {0, 2}), PageLines(4, {}), {"set 90 18"}}));
}

TEST_F(SonarModelParameters, WhatIsReservedGoesBackAsItCame) {
  sonar->state.working[4][1] = 0xA7;
  sonar->state.working[5][0] = 0xB6;
  ConnectSonar();
  ChangeAll();
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(sonar->state.stored[4][1], 0xA7);
  EXPECT_EQ(sonar->state.stored[5][0], 0x06) << "four bits of it";
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

TEST_F(SonarModelParameters, TheIdentityFollowsTheCommit) {
  ConnectSonar();
  EXPECT_EQ(SetLUID(0xABCD), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic({"set 90", "set 8A", "sleep 250", "set 00 CD AB"});
  EXPECT_EQ(sonar->state.luid, 0xABCD);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic({"set 90"});
  EXPECT_EQ(SetLUID(0x0102), 1U);
  ChangeAll();
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic(Join({ChangedLines(), {"set 8A", "sleep 250", "set 00 02 01 35 1F 37 38 39"}}));
  EXPECT_EQ(SetLUID(7), 1U);
  EXPECT_EQ(ReadCfg(), 1U);
  EXPECT_EQ(GetLUID(), 0x0102U);
  ForgetTraffic();
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic({"set 90"});
}

TEST_F(SonarModelParameters, AReadForgetsTheMarks) {
  ConnectSonar();
  ChangeAll();
  EXPECT_EQ(ReadCfg(), 1U);
  ExpectTraffic(ReadLines());
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic({"set 90"});
}

TEST_F(SonarModelParameters, FactoryDefaultsOfASensorOfVersion4LoseTheirIdleFlags) {
  for (const std::uint16_t did : {std::uint16_t{0x0400}, std::uint16_t{0x040F}}) {
    sonar = std::make_shared<sim::Sonar>();
    sonar->state.did = did;
    ConnectSonar();
    ChangeAll();
    EXPECT_EQ(WriteCfg(), 1U);
    ForgetTraffic();
    EXPECT_EQ(ResetFactoryDflts(), 1U);
    sim::SonarPages factory = sim::FactorySonarPages();
    EXPECT_NE(factory[5][4], 0);
    factory[5][4] = 0;
    ExpectTraffic(
        Join({{"set A0", "sleep 2000"}, ReadLines(), PageLines(5, factory[5]), {"set 90 20"}, ReadLines()}));
    EXPECT_EQ(GetLastLibErr(), 0U);
    EXPECT_EQ(sonar->state.stored, factory);
    host.hid.Unplug("device-" + std::to_string(did == 0x0400 ? 1 : 2));
    USBDisconnect();
  }
}

TEST_F(SonarModelParameters, FactoryDefaultsOfAnyOtherSensorAreReadOnce) {
  sonar->state.did = 0x0410;
  ConnectSonar();
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  ExpectTraffic(Join({{"set A0", "sleep 2000"}, ReadLines()}));
}

TEST_F(SonarModelParameters, UserDefaultsAreSavedAndComeBack) {
  ConnectSonar();
  ChangeAll();
  EXPECT_EQ(WriteCfg(), 1U);
  ForgetTraffic();
  EXPECT_EQ(SaveUserDflts(), 1U);
  ExpectTraffic(Join({{"set E0", "sleep 2000"}, ReadLines()}));
  EXPECT_EQ(sonar->state.user, ChangedAsKept());
  EXPECT_EQ(ResetFactoryDflts(), 1U);
  EXPECT_EQ(Ranging().MaxDist, 60);
  ForgetTraffic();
  EXPECT_EQ(ResetUserDflts(), 1U);
  ExpectTraffic(Join({{"set D0", "sleep 2000"}, ReadLines()}));
  EXPECT_EQ(Ranging().MaxDist, 70);
  EXPECT_EQ(sonar->state.working, ChangedAsKept());
}

TEST_F(SonarModelParameters, ResetsThatCannotBeSent) {
  ConnectSonar();
  for (const auto operation : {ResetFactoryDflts, ResetUserDflts, SaveUserDflts}) {
    sonar->faults.Restart();
    sonar->faults.RefuseFrom(1);
    EXPECT_EQ(operation(), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x80202U);
    sonar->faults.Restart();
    sonar->faults.RefuseAt(3);
    EXPECT_EQ(operation(), 0U);
    EXPECT_EQ(GetLastLibErr(), 0x20000U) << "of the read behind it";
  }
}

}  // namespace
}  // namespace tavlyn::test
