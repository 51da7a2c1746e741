// The sonar sensor model, command by command, with somebody walking in front of it.
#include "sim/devices/sonar.h"

#include <gtest/gtest.h>

#include "tests/support/exchange.h"

namespace tavlyn::test {
namespace {

using sim::Sonar;
using sim::SonarPage;
using sim::Walk;

TEST(Walk, GoesFromPlaceToPlaceAtEvenSpeed) {
  const Walk walk({{1000, 20, 40}, {500, 40, 40}, {2000, 40, 0}}, 100);
  const struct {
    std::uint64_t now;
    double inches;
    double speed;
  } kTimes[] = {{0, 20, 20},     {100, 20, 20},   {600, 30, 20}, {1100, 40, 0}, {1599, 40, 0},
                {1600, 40, -20}, {2600, 20, -20}, {3600, 0, 0},  {9999, 0, 0}};
  for (const auto& [now, inches, speed] : kTimes) {
    EXPECT_DOUBLE_EQ(walk.At(now), inches) << now;
    EXPECT_DOUBLE_EQ(walk.SpeedAt(now), speed) << now;
  }
  EXPECT_DOUBLE_EQ(Walk(33).At(5), 33);
  EXPECT_DOUBLE_EQ(Walk({}, 0).At(5), 0);
}

TEST(Sonar, ReadsAndStoresEachPage) {
  Sonar sonar;
  for (std::uint8_t page = 0; page < sim::kSonarPages; ++page) {
    const auto command = static_cast<std::uint8_t>(0x80 + page);
    EXPECT_TRUE(Store(sonar, {command}, {1, 2, 12, 4, 5, 6, 7, page}));
    sonar.state.working[page][7] = static_cast<std::uint8_t>(page + 0x10U);
    EXPECT_EQ(Ask(sonar, {command}), "01 02 0C 04 05 06 07 1" + std::to_string(page));
  }
  EXPECT_EQ(Ask(sonar, {0x86}), "00");
  EXPECT_EQ(sonar.state.counters.unknownCommands, 1);
}

TEST(Sonar, TheCycleCountIsReadOnly) {
  Sonar sonar;
  EXPECT_TRUE(Store(sonar, {0x80}, {1, 2, 99, 4, 5, 6, 7, 8}));
  EXPECT_EQ(Ask(sonar, {0x80}), "01 02 0C 04 05 06 07 08");
}

TEST(Sonar, AFetchEndsAStoreThatGotNoData) {
  Sonar sonar;
  const SonarPage before = sonar.state.working[5];
  Ask(sonar, {0x85});
  EXPECT_TRUE(Set(sonar, {0xB1}));
  EXPECT_EQ(sonar.state.working[5], before);
  EXPECT_FALSE(sonar.state.sendsKeys);
  EXPECT_TRUE(Set(sonar, {0xB0}));
  EXPECT_TRUE(sonar.state.sendsKeys);
}

TEST(Sonar, RepeatedFetchesTurnOnePageOrNone) {
  Sonar sonar;
  const std::string second = "01 01 08";
  EXPECT_EQ(Ask(sonar, {0x80}), "02 3E 0C 31 D0 05 02 03");
  EXPECT_EQ(Get(sonar), second);
  EXPECT_EQ(Get(sonar), second);
  sonar.state.repeatTurnsPage = false;
  Ask(sonar, {0x80});
  EXPECT_EQ(Get(sonar), "02 3E 0C 31 D0 05 02 03");
}

TEST(Sonar, CommitsTheGroupsOfTheMask) {
  Sonar sonar;
  for (std::size_t bit = 0; bit < sim::kSonarPages; ++bit) {
    sonar.state = sim::NewSonarState();
    for (SonarPage& page : sonar.state.working) page[7] = 0x77;
    EXPECT_TRUE(Set(sonar, {0x90, static_cast<std::uint8_t>(1U << bit)}));
    sonar.PowerCycle();
    for (std::size_t page = 0; page < sim::kSonarPages; ++page) {
      EXPECT_EQ(sonar.state.working[page][7] == 0x77, page == bit) << bit << ' ' << page;
    }
  }
}

TEST(Sonar, GoesBackToFactoryAndUserDefaults) {
  Sonar sonar;
  const sim::SonarPages factory = sim::FactorySonarPages();
  Store(sonar, {0x85}, {0, 44});
  EXPECT_TRUE(Set(sonar, {0xE0}));
  EXPECT_TRUE(Set(sonar, {0xA0}));
  EXPECT_EQ(sonar.state.working, factory);
  EXPECT_EQ(sonar.state.stored, factory);
  EXPECT_TRUE(Set(sonar, {0xD0}));
  EXPECT_EQ(sonar.state.working[5][1], 44);
  sonar.PowerCycle();
  EXPECT_EQ(sonar.state.working[5][1], 44);
}

TEST(Sonar, TellsAndKeepsItsIdentity) {
  Sonar sonar;
  sonar.state.luid = 0x0102;
  EXPECT_EQ(Ask(sonar, {0x8A}), "02 01 00 04 01 00 02 03");
  EXPECT_TRUE(Store(sonar, {0x8A}, {0, 0x34, 0x12, 0xFF}));
  EXPECT_EQ(sonar.state.luid, 0x1234);
  EXPECT_EQ(sonar.state.did, 0x0400);
}

TEST(Sonar, MeasuresWhoStandsThere) {
  Sonar sonar;
  sonar.Stand(14);
  EXPECT_EQ(Ask(sonar, {0x8F}), "01 31");
  sonar.Stand(13);
  EXPECT_EQ(Ask(sonar, {0x8F}), "00 2D") << "too near";
  sonar.Stand(61);
  EXPECT_EQ(Ask(sonar, {0x8F}), "00 D4") << "too far";
  sonar.Stand(200);
  EXPECT_EQ(Ask(sonar, {0x8F}), "00 FF");
  sonar.state.status = 0xA5;
  EXPECT_EQ(Ask(sonar, {0x8F}), "A5 FF");
}

TEST(Sonar, SeesSomebodyLeaveAndComeBack) {
  Sonar sonar;
  std::uint64_t now = 5000;
  sonar.clock = [&now] { return now; };
  sonar.Go({{2000, 20, 40}, {1000, 40, 80}, {1000, 80, 40}});
  const auto after = [&](std::uint64_t pause) {
    now = 5000 + pause;
    return Ask(sonar, {0x8F});
  };
  EXPECT_EQ(after(0), "03 45");
  EXPECT_EQ(after(1000), "03 68");
  EXPECT_EQ(after(2999), "00 FF");
  EXPECT_EQ(after(3750), "05 AE");
  EXPECT_EQ(after(4000), "01 8B");
}

TEST(Sonar, Faults) {
  Sonar sonar;
  sonar.Stand(14);
  EXPECT_EQ(Ask(sonar, {0x8A}), "01 00 00 04 01 00 02 03");
  sonar.faults.DropAt(sonar.faults.Exchanges() + 1);
  EXPECT_EQ(Ask(sonar, {0x8F}), "01 00 00 04 01 00 02 03") << "it was never told";
  sonar.faults.DelayAt(sonar.faults.Exchanges() + 1);
  EXPECT_EQ(Ask(sonar, {0x8F}), "01 00 00 04 01 00 02 03");
  EXPECT_EQ(Get(sonar), "01 31");
  sonar.faults.RefuseReply({0x8F}, 1);
  EXPECT_EQ(Ask(sonar, {0x8F}), "refused");
  sonar.faults.RefuseCommand({0x8F}, 1);
  EXPECT_EQ(Ask(sonar, {0x8F}), "refused");
  sonar.faults.GarbleAt(sonar.faults.Exchanges() + 2);
  EXPECT_EQ(Ask(sonar, {0x8F}), "FE CE FF FF FF FF FF FF");
  sonar.faults.VanishAt(sonar.faults.Exchanges() + 1);
  EXPECT_EQ(Ask(sonar, {0x8F}), "refused");
  EXPECT_FALSE(sonar.Present());
}

}  // namespace
}  // namespace tavlyn::test
