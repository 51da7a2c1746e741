// The library sleeps and looks at the clock through functions of libc, which the test program defines anew.
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <ctime>

#include "tests/boundary/quick_time.h"

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;

std::atomic<std::int64_t> slept{0};

std::int64_t Nanoseconds(const timespec& time) { return time.tv_sec * kSecond + time.tv_nsec; }

}  // namespace

extern "C" {

int nanosleep(const timespec* wanted, timespec* left) {
  slept += Nanoseconds(*wanted);
  if (left != nullptr) *left = {};
  return 0;
}

int clock_nanosleep(clockid_t clock, int flags, const timespec* wanted, timespec* left) {
  timespec pause = *wanted;
  if ((flags & TIMER_ABSTIME) != 0) {
    timespec now{};
    clock_gettime(clock, &now);
    const std::int64_t until = std::max<std::int64_t>(Nanoseconds(*wanted) - Nanoseconds(now), 0);
    pause = {until / kSecond, until % kSecond};
  }
  return nanosleep(&pause, left);
}

int clock_gettime(clockid_t clock, timespec* now) {
  if (syscall(SYS_clock_gettime, clock, now) != 0) return -1;
  const std::int64_t time = Nanoseconds(*now) + slept;
  *now = {time / kSecond, time % kSecond};
  return 0;
}
}

namespace tavlyn::boundary {

void TakeItsTime() {}

void PassQuickly(std::chrono::milliseconds length) { slept += std::chrono::nanoseconds(length).count(); }

}  // namespace tavlyn::boundary
