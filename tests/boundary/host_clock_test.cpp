// The pauses of Linux: never too short, and the program's thread is unchanged afterwards.
#include <gtest/gtest.h>
#include <sys/prctl.h>

#include <cerrno>
#include <chrono>
#include <ctime>

#include "platform/platform.h"
#include "tests/boundary/calls.h"
#include "tests/boundary/failing_calls.h"
#include "tests/boundary/variable.h"

namespace {

std::time_t moment = 0;

}  // namespace

// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
extern "C" std::time_t time(std::time_t* also) noexcept {
  if (also != nullptr) *also = moment;
  return moment;
}

namespace tavlyn::boundary {
namespace {

using platform::TheHost;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

TEST(HostClock, ASleepIsNeverShort) {
  const RealTime real;
  for (const std::uint32_t wanted : {1U, 2U, 3U, 30U}) {
    const auto start = steady_clock::now();
    TheHost().clock.Sleep(wanted);
    EXPECT_GE(steady_clock::now() - start, milliseconds(wanted));
  }
}

TEST(HostClock, TheThreadKeepsItsOwnTimerSlack) {
  constexpr unsigned long kSlack = 70'000;
  ASSERT_EQ(prctl(PR_SET_TIMERSLACK, kSlack), 0);
  TheHost().clock.Sleep(1);
  EXPECT_EQ(static_cast<int>(kSlack), prctl(PR_GET_TIMERSLACK));
}

TEST(HostClock, TicksAreMilliseconds) {
  const std::uint64_t tick = TheHost().clock.Tick();
  TheHost().clock.Sleep(1234);
  EXPECT_EQ(TheHost().clock.Tick() - tick, 1234U);
}

TEST(HostClock, ASignalDoesNotShortenASleep) {
  const Failing interrupted("nanosleep", EINTR, 3);
  const std::uint64_t tick = TheHost().clock.Tick();
  TheHost().clock.Sleep(50);
  EXPECT_EQ(TheHost().clock.Tick() - tick, 50U);
  EXPECT_EQ(Failing::Left(), 0);
}

TEST(HostClock, ASleepThatTheSystemRefusesEnds) {
  const Failing refused("nanosleep", EINVAL, 2);
  TheHost().clock.Sleep(50);
  EXPECT_EQ(Failing::Left(), 1);
}

TEST(HostClock, TheDateIsThatOfThePlace) {
  const Variable place("TZ", "PLC-5:30");
  moment = 1'709'578'987;  // 2024-03-04 19:03:07 UTC
  const std::tm local = TheHost().clock.LocalTime();
  EXPECT_EQ(local.tm_year, 124);
  EXPECT_EQ(local.tm_mon, 2);
  EXPECT_EQ(local.tm_mday, 5);
  EXPECT_EQ(local.tm_hour, 0);
  EXPECT_EQ(local.tm_min, 33);
  EXPECT_EQ(local.tm_sec, 7);
}

}  // namespace
}  // namespace tavlyn::boundary
