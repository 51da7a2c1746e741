// Range, keystrokes and LEDs of a sonar sensor.
#include "tests/sonar/model_bench.h"

namespace tavlyn::test {
namespace {

using RangeWords = std::array<std::uint16_t, 5>;

class SonarModelRange : public SonarModelBench {
 protected:
  void SetUp() override {
    SonarModelBench::SetUp();
    ConnectSonar();
  }
};

TEST_F(SonarModelRange, TellsDistanceAndStatus) {
  RangeWords words{9, 9, 9, 9, 9};
  sonar->Stand(14);
  EXPECT_EQ(GetObjRangeInfo(words.data()), 1U);
  ExpectTraffic({"set 8F", "sleep 250", "get 01 31"});
  EXPECT_EQ(words, (RangeWords{14, 1, 0, 0, 1}));
  sonar->state.status = 0xFE;
  sonar->Stand(71);
  EXPECT_EQ(GetObjRangeInfo(words.data()), 1U);
  EXPECT_EQ(words, (RangeWords{71, 0, 1, 1, 0xFE}));
  sonar->Stand(500);
  EXPECT_EQ(GetObjRangeInfo(words.data()), 1U);
  EXPECT_EQ(words[0], 73) << "as far as a byte of units reaches";
  EXPECT_EQ(GetLastLibErr(), 0U);
}

TEST_F(SonarModelRange, FollowsSomebodyWhoLeaves) {
  sonar->Go({{1000, 20, 40}, {500, 40, 100}});
  RangeWords words{};
  std::vector<std::uint16_t> inches;
  std::vector<std::uint16_t> status;
  for (int poll = 0; poll < 8; ++poll) {
    EXPECT_EQ(GetObjRangeInfo(words.data()), 1U);
    inches.push_back(words[0]);
    status.push_back(words[4]);
  }
  // The sensor measures when asked; the answer is fetched 250 ms later.
  EXPECT_EQ(inches, (std::vector<std::uint16_t>{20, 25, 30, 35, 40, 70, 73, 73}));
  EXPECT_EQ(status, (std::vector<std::uint16_t>{3, 3, 3, 3, 3, 0, 0, 0}));
}

TEST_F(SonarModelRange, HaltsKeystrokesAndLetsThemGoOn) {
  EXPECT_EQ(HaltKBSends(0x10000), 1U);
  EXPECT_FALSE(sonar->state.sendsKeys);
  EXPECT_EQ(HaltKBSends(0), 1U);
  EXPECT_TRUE(sonar->state.sendsKeys);
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

}  // namespace
}  // namespace tavlyn::test
