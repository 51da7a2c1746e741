// A carrier of a device's line that a loop serves: the loop polls for it and calls it when something may have
// arrived; it never waits by itself.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "sim/carriers/net.h"
#include "sim/paced_line.h"

namespace tavlyn::sim {

class Served {
 public:
  using Clock = std::chrono::steady_clock;

  virtual ~Served() = default;
  virtual LineManner& Manner() = 0;
  virtual void AddTo(std::vector<pollfd>& polled) const = 0;
  // When Serve has something to do even if nothing arrives; none if never.
  [[nodiscard]] virtual std::optional<Clock::time_point> NextDue() const = 0;
  // Does what can be done without waiting.
  virtual void Serve() = 0;
};

using DueTime = std::optional<Served::Clock::time_point>;

// The earlier of the two, if any.
inline DueTime Sooner(DueTime one, DueTime other) {
  if (!one || !other) return one ? one : other;
  return std::min(*one, *other);
}

// The time-out for poll(): 0 if it is due, -1 if there is none.
inline int PollTimeout(DueTime due) {
  if (!due) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - Served::Clock::now());
  return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

}  // namespace tavlyn::sim
