// Parameters of a sonar sensor, read from, checked, and written to the model.
#include "tests/sonar/model_bench.h"

namespace tavlyn::test {
namespace {

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
