// The pauses of Linux: never too short, and the program's thread is unchanged afterwards.
#include <gtest/gtest.h>
#include <sys/prctl.h>

#include <chrono>

#include "platform/platform.h"
#include "tests/boundary/calls.h"

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

}  // namespace
}  // namespace tavlyn::boundary
