// Commands that show events until something ends them.
#pragma once

#include <chrono>
#include <optional>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

using Clock = std::chrono::steady_clock;
Clock::time_point After(double seconds);
Failure NoCard();

// Ctrl-C, a time or a number of events ends it.
class Watching {
 public:
  // most 0: any number of events.
  Watching(std::optional<double> seconds, int most);

  // Throws Failure if the time is over and nothing has happened.
  [[nodiscard]] bool GoesOn() const;
  void Count(int events) { events_ += events; }

 private:
  Clock::time_point deadline_;
  int most_;
  int events_ = 0;
};

// Whether a device that is polled is still there.
class Answers {
 public:
  // Returns came. Throws Failure when the active device has failed so often in a row that it must be lost.
  bool Came(bool came);

 private:
  int failed_ = 0;
};

// Tells people on standard error what the active device is. Make the Watching object first: as soon as people
// see this, Ctrl-C has to work.
void TellWatched(bool asJson);

}  // namespace tavlyn::ctl
