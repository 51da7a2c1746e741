// The Linux backend's clock for fuzzers: time passes only in sleeps, and those take none.
#include "platform/parts.h"

namespace tavlyn::platform {
namespace {

class QuickClock final : public Clock {
 public:
  std::uint64_t Tick() override { return tick_; }
  void Sleep(std::uint32_t milliseconds) override { tick_ += milliseconds; }
  std::tm LocalTime() override { return {}; }

 private:
  std::uint64_t tick_ = 1'000'000;
};

constinit NeverDestroyed<QuickClock> quickClock;

}  // namespace

Clock& TheClock() { return quickClock; }

}  // namespace tavlyn::platform
