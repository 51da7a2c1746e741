// A carrier that a loop serves: polled for, called when something may have come, never waiting by itself.
#pragma once

#include <poll.h>

#include <chrono>
#include <optional>
#include <vector>

namespace tavlyn::sim {

class Served {
 public:
  using Clock = std::chrono::steady_clock;

  virtual ~Served() = default;
  virtual void AddTo(std::vector<pollfd>& polled) const = 0;
  // When Serve has something to do even if nothing comes; none: only then.
  [[nodiscard]] virtual std::optional<Clock::time_point> NextDue() const = 0;
  // Does what can be done at once.
  virtual void Serve() = 0;
};

}  // namespace tavlyn::sim
