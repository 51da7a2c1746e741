// Range, keystrokes and LEDs of a sonar sensor, and its range as an ID.
#include "core/state.h"
#include "tests/sonar/model_bench.h"

namespace tavlyn::test {
namespace {

using Words = std::array<std::uint16_t, 5>;

class SonarModelRange : public SonarModelBench {
 protected:
  void SetUp() override {
    SonarModelBench::SetUp();
    ConnectSonar();
  }
};

TEST_F(SonarModelRange, TellsDistanceAndStatus) {
  Words words{9, 9, 9, 9, 9};
  sonar->Stand(14);
  EXPECT_EQ(GetObjRangeInfo(words.data()), 1U);
  ExpectTraffic({"set 8F", "sleep 250", "get 01 31"});
  EXPECT_EQ(words, (Words{14, 1, 0, 0, 1}));
  sonar->state.status = 0xFE;
  sonar->Stand(71);
  EXPECT_EQ(GetObjRangeInfo(words.data()), 1U);
  EXPECT_EQ(words, (Words{71, 0, 1, 1, 0xFE}));
  sonar->Stand(500);
  EXPECT_EQ(GetObjRangeInfo(words.data()), 1U);
  EXPECT_EQ(words[0], 73) << "as far as a byte of units reaches";
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(SonarModelRange, FollowsSomebodyWhoLeaves) {
  sonar->Go({{1000, 20, 40}, {500, 40, 100}});
  Words words{};
  std::vector<std::uint16_t> inches;
  std::vector<std::uint16_t> status;
  for (int poll = 0; poll < 8; ++poll) {
    EXPECT_EQ(GetObjRangeInfo(words.data()), 1U);
    inches.push_back(words[0]);
    status.push_back(words[4]);
  }
  // The sensor measures when it is asked; the answer is fetched 250 ms later.
  EXPECT_EQ(inches, (std::vector<std::uint16_t>{20, 25, 30, 35, 40, 70, 73, 73}));
  EXPECT_EQ(status, (std::vector<std::uint16_t>{3, 3, 3, 3, 3, 0, 0, 0}));
}

TEST_F(SonarModelRange, AFailedQueryAtEitherExchange) {
  const Words before{1, 2, 3, 4, 5};
  Words words = before;
  sonar->faults.Restart();
  sonar->faults.RefuseFrom(1);
  EXPECT_EQ(GetObjRangeInfo(words.data()), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x1000202U);
  EXPECT_EQ(words, before);
  sonar->faults.Restart();
  sonar->faults.RefuseAt(2);
  EXPECT_EQ(GetObjRangeInfo(words.data()), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  EXPECT_EQ(words, before);
  sonar->faults.Restart();
  sonar->faults.RefuseAt(1);
  EXPECT_EQ(GetObjRangeInfo(words.data()), 1U);
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(SonarModelRange, HaltsKeystrokesAndLetsThemGoOn) {
  EXPECT_EQ(HaltKBSends(1), 1U);
  ExpectTraffic({"set B1"});
  EXPECT_FALSE(sonar->state.sendsKeys);
  EXPECT_EQ(HaltKBSends(0), 1U);
  ExpectTraffic({"set B0"});
  EXPECT_TRUE(sonar->state.sendsKeys);
  EXPECT_EQ(HaltKBSends(0x10000), 1U);
  ExpectTraffic({"set B1"});
  sonar->faults.Restart();
  sonar->faults.RefuseFrom(1);
  EXPECT_EQ(HaltKBSends(0), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x202U);
  EXPECT_EQ(SearchErr, 0x2000000U) << "its own word is the search's";
}

TEST_F(SonarModelRange, TheLedFlagsAsARecord) {
  struct Row {
    std::uint16_t flags, app, red, green;
  };
  for (const Row& row :
       {Row{0, 0, 0, 0}, {1, 0, 1, 0}, {2, 1, 0, 0}, {4, 0, 0, 1}, {7, 1, 1, 1}, {5, 0, 1, 1}}) {
    tsSonarParms ranging = Ranging();
    ranging.LEDFlags = row.flags;
    EXPECT_EQ(SetSonarParms(&ranging), 1U);
    tsLEDCtrl leds{9, 9, 9, 9, 9, 9, 9, 9};
    EXPECT_EQ(GetLEDCtrl(&leds), 1U);
    EXPECT_EQ(leds.bAppCtrlsLED, row.app);
    EXPECT_EQ(leds.iRedLEDState, row.red);
    EXPECT_EQ(leds.iGrnLEDState, row.green);
  }
  tsSonarParms ranging = Ranging();
  ranging.LEDFlags = 8;
  EXPECT_EQ(SetSonarParms(&ranging), 1U);
  tsLEDCtrl leds{9, 9, 9, 9, 9, 9, 9, 9};
  EXPECT_EQ(GetLEDCtrl(&leds), 8U);
  EXPECT_EQ(leds.bAppCtrlsLED | leds.iRedLEDState | leds.iGrnLEDState, 0);
}

TEST_F(SonarModelRange, SetLedsGoOutWithTheNextWriteOfTheirPage) {
  const tsLEDCtrl leds{-1, 5, 1, 0, 0, 0, 0, 0};
  EXPECT_EQ(SetLEDCtrl(&leds), 7U);
  EXPECT_EQ(WriteCfg(), 1U);
  ExpectTraffic({"set 90"});
  EXPECT_EQ(Ranging().LEDFlags, 7);
  const tsLEDCtrl off{};
  EXPECT_EQ(SetLEDCtrl(&off), 0U);
  const tsLEDCtrl red{0, 1, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(SetLEDCtrl(&red), 1U);
  const tsLEDCtrl green{0, 0, 1, 0, 0, 0, 0, 0};
  EXPECT_EQ(SetLEDCtrl(&green), 4U);
  const tsSonarParms ranging = Ranging();
  EXPECT_EQ(SetSonarParms(&ranging), 1U);
  EXPECT_EQ(WriteCfg(), 1U);
  EXPECT_EQ(sonar->state.stored[0][0], 4);
}

TEST_F(SonarModelRange, TheRangeIsAnIdOfFourBytes) {
  sonar->Stand(33);
  sonar->state.luid = 0x0A0B;
  EXPECT_EQ(ReadCfg(), 1U);
  const std::vector<std::vector<std::uint8_t>> kExpected = {
      {0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE},
      {1, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE},
      {1, 33, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE},
      {1, 33, 0xEE, 0xEE, 0xEE, 0xEE, 0xEE},
      {1, 33, 0x0B, 0x0A, 0xEE, 0xEE, 0xEE},
      {1, 33, 0x0B, 0x0A, 0, 0xEE, 0xEE},
      {1, 33, 0x0B, 0x0A, 0, 0, 0xEE},
  };
  for (const auto read : {GetActiveID, GetActiveID32}) {
    for (std::int16_t length = 0; length <= 6; ++length) {
      SCOPED_TRACE(length);
      LetTimePass();
      ForgetTraffic();
      std::vector<std::uint8_t> buffer(7, 0xEE);
      EXPECT_EQ(read(buffer.data(), length), 4U);
      ExpectTraffic({"set 8F", "sleep 250", "get"});
      EXPECT_EQ(buffer, kExpected[static_cast<std::size_t>(length)]);
    }
  }
}

TEST_F(SonarModelRange, AnIdOfAFailedQueryHasNoRange) {
  LetTimePass();
  sonar->faults.Restart();
  sonar->faults.RefuseAt(2);
  std::array<std::uint8_t, 4> buffer{0xEE, 0xEE, 0xEE, 0xEE};
  EXPECT_EQ(GetActiveID(buffer.data(), 4), 4U);
  EXPECT_EQ(buffer, (std::array<std::uint8_t, 4>{0, 0, 1, 0}));
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
}

TEST_F(SonarModelRange, AnIdAskedForTooSoonHasExpired) {
  LetTimePass();
  std::array<std::uint8_t, 4> buffer{};
  EXPECT_EQ(GetActiveID(buffer.data(), 4), 4U);
  ForgetTraffic();
  buffer.fill(0xEE);
  EXPECT_EQ(GetActiveID(buffer.data(), 4), 0U);
  EXPECT_EQ(buffer, (std::array<std::uint8_t, 4>{}));
  ExpectTraffic({});
}

}  // namespace
}  // namespace tavlyn::test
