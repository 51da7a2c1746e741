// The range, as a record and as an ID, and the keystroke halt.
#include <array>

#include "tests/sonar/model_bench.h"
#include "tests/sonar/sensor.h"

namespace tavlyn::test {
namespace {

class SonarRange : public SonarBench {};

using Range = std::array<std::uint16_t, 5>;

TEST_F(SonarRange, IsAskedForOnceAndTakesAQuarterOfASecond) {
  Entry().LastLibErr = 4;
  Range range{};
  sensor->replies = {{0xF5, 125}, {0x02, 0}, {0x08, 255}};
  EXPECT_EQ(GetObjRangeInfo(range.data()), 1U);
  ExpectTraffic(Asked("8F"));
  EXPECT_EQ(range, (Range{36, 1, 0, 1, 0xF5}));
  EXPECT_EQ(GetLastLibErr(), 0U);
  EXPECT_EQ(GetObjRangeInfo(range.data()), 1U);
  EXPECT_EQ(range, (Range{0, 0, 1, 0, 2}));
  EXPECT_EQ(GetObjRangeInfo(range.data()), 1U);
  EXPECT_EQ(range, (Range{73, 0, 0, 0, 8}));
  ExpectNoLock();
}

TEST_F(SonarRange, Failures) {
  Range range{7, 7, 7, 7, 7};
  sensor->Restart(0);
  EXPECT_EQ(GetObjRangeInfo(range.data()), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x1000202U);
  sensor->Restart(1);
  ForgetTraffic();
  EXPECT_EQ(GetObjRangeInfo(range.data()), 0U);
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
  ExpectTraffic({"set 8F", "sleep 250", "get refused"});
  EXPECT_EQ(range, (Range{7, 7, 7, 7, 7}));
  EXPECT_EQ(GetObjRangeInfo(nullptr), 0U);
  ExpectTraffic({});
}

TEST_F(SonarRange, AsAnIdOfAnyLength) {
  Entry().LUID = 0xABCD;
  using Id = std::array<std::uint8_t, 7>;
  const std::vector<std::pair<std::int16_t, Id>> byLength = {
      {-1, {9, 9, 9, 9, 9, 9, 9}},       {0, {9, 9, 9, 9, 9, 9, 9}},  {1, {1, 9, 9, 9, 9, 9, 9}},
      {2, {1, 36, 9, 9, 9, 9, 9}},       {3, {1, 36, 9, 9, 9, 9, 9}}, {4, {1, 36, 0xCD, 0xAB, 9, 9, 9}},
      {6, {1, 36, 0xCD, 0xAB, 0, 0, 9}},
  };
  for (const auto& [length, expected] : byLength) {
    for (const auto read : {GetActiveID, GetActiveID32}) {
      Id id{9, 9, 9, 9, 9, 9, 9};
      sensor->replies = {{0x0F, 125}};
      LetTimePass();
      ForgetTraffic();
      EXPECT_EQ(read(id.data(), length), 4) << length;
      EXPECT_EQ(id, expected) << length;
      ExpectTraffic(Asked("8F"));
    }
  }
}

TEST_F(SonarRange, AFailedQueryStillGivesAnId) {
  Entry().LUID = 0xABCD;
  std::array<std::uint8_t, 5> id{9, 9, 9, 9, 9};
  sensor->Restart(1);
  EXPECT_EQ(GetActiveID(id.data(), 5), 4);
  EXPECT_EQ(id, (std::array<std::uint8_t, 5>{0, 0, 0xCD, 0xAB, 0}));
  EXPECT_EQ(GetLastLibErr(), 0x1000000U);
}

TEST_F(SonarRange, PollsThatComeTooFastGetNothing) {
  std::array<std::uint8_t, 4> id{9, 9, 9, 9};
  EXPECT_EQ(GetActiveID(id.data(), 4), 4);
  ForgetTraffic();
  EXPECT_EQ(GetActiveID(id.data(), 4), 0);
  EXPECT_EQ(id, (std::array<std::uint8_t, 4>{}));
  ExpectTraffic({});
  LetTimePass();
  EXPECT_EQ(getActiveID(4), 0) << "no reading without a buffer";
  EXPECT_EQ(getActiveID32(4), 0);
  ExpectTraffic({});
}

TEST_F(SonarRange, KeystrokesAreHaltedAndGoOn) {
  shared.SearchErr = 5;
  EXPECT_EQ(HaltKBSends(0x10000), 1U);
  ExpectTraffic({"set B1"});
  EXPECT_EQ(Block().SonarOpMark, 0xB1U);
  EXPECT_EQ(shared.SearchErr, 0U);
  EXPECT_EQ(HaltKBSends(0), 1U);
  ExpectTraffic({"set B0"});
  EXPECT_EQ(Block().SonarOpMark, 0xB0U);
  sensor->Restart(0);
  EXPECT_EQ(HaltKBSends(0xFFFFFFFF), 0U);
  EXPECT_EQ(shared.SearchErr, 0x2000000U);
  EXPECT_EQ(GetLastLibErr(), 0x202U);
  EXPECT_EQ(Block().SonarOpMark, 0xB1U);
}

using RangeWords = std::array<std::uint16_t, 5>;

class SonarModelRange : public SonarModelBench {
 protected:
  void SetUp() override {
    SonarModelBench::SetUp();
    ConnectSonar();
  }
};

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
