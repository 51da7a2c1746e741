#include "platform/parts.h"
#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

constexpr std::int64_t kPerMillisecond = 10'000;  // in the units of a timer
constexpr DWORD kHighResolution = 0x2;            // CREATE_WAITABLE_TIMER_…, which older headers lack

// Sleep wakes at a tick of the system, up to 15.6 ms late. These timers are punctual; Windows has them from
// version 10 1803 on.
bool SleepPunctually(std::uint32_t milliseconds) {
  HANDLE timer = CreateWaitableTimerExW(nullptr, nullptr, kHighResolution, TIMER_MODIFY_STATE | SYNCHRONIZE);
  if (timer == nullptr) return false;
  LARGE_INTEGER fromNow;
  fromNow.QuadPart = -kPerMillisecond * milliseconds;
  const bool slept = SetWaitableTimer(timer, &fromNow, 0, nullptr, nullptr, FALSE) &&
                     WaitForSingleObject(timer, INFINITE) == WAIT_OBJECT_0;
  CloseHandle(timer);
  return slept;
}

class SystemClock final : public Clock {
 public:
  // Starts again from 0 every 49.7 days, which is deliberately passed on.
  std::uint64_t Tick() override { return GetTickCount(); }

  void Sleep(std::uint32_t milliseconds) override {
    if (!SleepPunctually(milliseconds)) ::Sleep(milliseconds);
  }

  // Asks the system, because the C library would obey TZ, which shells ported from other systems set.
  std::tm LocalTime() override {
    SYSTEMTIME now;
    GetLocalTime(&now);
    std::tm local{};
    local.tm_year = now.wYear - 1900;
    local.tm_mon = now.wMonth - 1;
    local.tm_mday = now.wDay;
    local.tm_hour = now.wHour;
    local.tm_min = now.wMinute;
    local.tm_sec = now.wSecond;
    local.tm_wday = now.wDayOfWeek;
    return local;
  }
};

constinit NeverDestroyed<SystemClock> clockPart;

}  // namespace

Clock& TheClock() { return clockPart; }

}  // namespace tavlyn::platform
