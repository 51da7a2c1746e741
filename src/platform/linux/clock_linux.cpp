#include <sys/prctl.h>

#include <atomic>
#include <cerrno>
#include <ctime>

#include "platform/linux/parts.h"

namespace tavlyn::platform {
namespace {

// Linux lets a thread oversleep by some 50 µs, so that timers fall together. A search makes hundreds of
// pauses of 2 ms, so the caller's thread is punctual while it sleeps here or searches. Gives the slack it
// had.
int BePunctual() {
  const int slack = prctl(PR_GET_TIMERSLACK);
  prctl(PR_SET_TIMERSLACK, 1UL);
  return slack;
}

void PutBackSlack(int slack) {
  if (slack > 0) prctl(PR_SET_TIMERSLACK, static_cast<unsigned long>(slack));
}

// The thread between BeginPauses and EndPauses, and what it had before. Deliberately no variable of each
// thread's own: its memory would be had at a thread's first pause, and a process without it is then ended.
constinit std::atomic<pthread_t> pausing{};
constinit int slackBefore = 0;

}  // namespace

std::uint64_t LinuxClock::Tick() {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1000 + static_cast<std::uint64_t>(now.tv_nsec) / 1'000'000;
}

void LinuxClock::Sleep(std::uint32_t milliseconds) {
  const int slack = pausing != pthread_self() ? BePunctual() : 0;
  timespec left{};
  left.tv_sec = milliseconds / 1000;
  left.tv_nsec = static_cast<long>(milliseconds % 1000) * 1'000'000;
  while (nanosleep(&left, &left) != 0 && errno == EINTR) {
  }
  PutBackSlack(slack);
}

void LinuxClock::BeginPauses() {
  slackBefore = BePunctual();
  pausing = pthread_self();
}

void LinuxClock::EndPauses() {
  pausing = pthread_t{};
  PutBackSlack(slackBefore);
}

std::tm LinuxClock::LocalTime() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return local;
}

}  // namespace tavlyn::platform
