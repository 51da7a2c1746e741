#include <mutex>

#include "platform/windows/backend.h"
#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

class SystemClock final : public Clock {
 public:
  // GetTickCount starts again from 0 every 49.7 days. The count is read under the lock, so that no thread
  // brings an older one than is known already.
  std::uint64_t Tick() override {
    const std::lock_guard lock(mutex_);
    tick_ += static_cast<std::uint32_t>(GetTickCount() - static_cast<std::uint32_t>(tick_));
    return tick_;
  }

  void Sleep(std::uint32_t milliseconds) override { ::Sleep(milliseconds); }

  std::tm LocalTime() override {
    std::tm local{};
    const std::time_t now = std::time(nullptr);
    localtime_s(&local, &now);
    return local;
  }

 private:
  std::mutex mutex_;
  std::uint64_t tick_ = 0;
};

}  // namespace

Clock& WindowsClock() {
  static SystemClock clock;
  return clock;
}

}  // namespace tavlyn::platform
