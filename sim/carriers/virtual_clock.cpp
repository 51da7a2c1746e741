#include "sim/carriers/virtual_clock.h"

namespace tavlyn::sim {
namespace {

constexpr std::uint64_t kFirstTick = 1'000'000;

}  // namespace

void VirtualClock::Reset() {
  tick = kFirstTick;
  onSleep = nullptr;
  localTime = {};
  localTime.tm_year = 2024 - 1900;
  localTime.tm_mon = 2;
  localTime.tm_mday = 5;
  localTime.tm_hour = 6;
  localTime.tm_min = 7;
  localTime.tm_sec = 8;
}

void VirtualClock::Sleep(std::uint32_t milliseconds) {
  Event event{EventKind::kSleep};
  event.milliseconds = milliseconds;
  transcript_.Add(event);
  tick += milliseconds;
  if (onSleep) onSleep();
}

}  // namespace tavlyn::sim
