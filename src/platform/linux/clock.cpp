#include <pthread.h>
#include <sys/prctl.h>

#include <atomic>
#include <cerrno>
#include <ctime>

#include "platform/parts.h"

namespace tavlyn::platform {
namespace {

// Linux lets a thread oversleep by some 50 µs, so that timers can expire together. A search makes hundreds of
// pauses of 2 ms, so the caller's thread is punctual while it sleeps here or searches. Returns the slack that
// it had.
int BePunctual() {
  const int slack = prctl(PR_GET_TIMERSLACK);
  prctl(PR_SET_TIMERSLACK, 1UL);
  return slack;
}

void PutBackSlack(int slack) {
  if (slack > 0) prctl(PR_SET_TIMERSLACK, static_cast<unsigned long>(slack));
}

class SystemClock final : public Clock {
 public:
  std::uint64_t Tick() override {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1000 +
           static_cast<std::uint64_t>(now.tv_nsec) / 1'000'000;
  }

  void Sleep(std::uint32_t milliseconds) override {
    const int slack = pausing_ != pthread_self() ? BePunctual() : 0;
    timespec left{};
    left.tv_sec = milliseconds / 1000;
    left.tv_nsec = static_cast<long>(milliseconds % 1000) * 1'000'000;
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
    PutBackSlack(slack);
  }

  void BeginPauses() override {
    slackBefore_ = BePunctual();
    pausing_ = pthread_self();
  }

  void EndPauses() override {
    pausing_ = pthread_t{};
    PutBackSlack(slackBefore_);
  }

  std::tm LocalTime() override {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local;
  }

 private:
  // The thread between BeginPauses and EndPauses, and the slack that it had before. Deliberately not
  // thread-local: that memory would be allocated at a thread's first pause, and a process that has none left
  // is then terminated.
  std::atomic<pthread_t> pausing_{};
  int slackBefore_ = 0;
};

constinit NeverDestroyed<SystemClock> clockPart;

}  // namespace

Clock& TheClock() { return clockPart; }

}  // namespace tavlyn::platform
