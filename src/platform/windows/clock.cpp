#include "platform/windows/backend.h"
#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

class SystemClock final : public Clock {
 public:
  // Starts again from 0 every 49.7 days, and is deliberately handed on so.
  std::uint64_t Tick() override { return GetTickCount(); }

  void Sleep(std::uint32_t milliseconds) override { ::Sleep(milliseconds); }

  std::tm LocalTime() override {
    std::tm local{};
    const std::time_t now = std::time(nullptr);
    localtime_s(&local, &now);
    return local;
  }
};

}  // namespace

Clock& WindowsClock() {
  static SystemClock clock;
  return clock;
}

}  // namespace tavlyn::platform
