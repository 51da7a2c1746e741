// Time that passes only in sleeps, or when a test advances it.
#pragma once

#include <cstdint>
#include <ctime>
#include <functional>

#include "platform/platform.h"
#include "sim/transcript.h"

namespace tavlyn::sim {

class VirtualClock final : public platform::Clock {
 public:
  explicit VirtualClock(Transcript& transcript) : transcript_(transcript) { Reset(); }
  std::uint64_t tick = 0;
  std::tm localTime{};            // stands still: 2024-03-05 06:07:08 unless set
  std::function<void()> onSleep;  // called after each sleep: what arrives late

  void Reset();
  std::uint64_t Tick() override { return tick; }
  void Sleep(std::uint32_t milliseconds) override;
  std::tm LocalTime() override { return localTime; }

 private:
  Transcript& transcript_;
};

}  // namespace tavlyn::sim
