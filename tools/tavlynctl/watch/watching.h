// Commands that show events until something ends them.
#pragma once

#include <chrono>
#include <optional>
#include <utility>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

using Clock = std::chrono::steady_clock;
// So many in a row, and the device counts as lost.
inline constexpr int kFailedPolls = 3;

Clock::time_point After(double seconds);
Failure NoCard();

// Ctrl-C, a time or a number of events ends it.
class Watching {
 public:
  // most 0: any number of events.
  Watching(std::optional<double> seconds, int most, Failure nothing);

  // Throws the Failure if the time is over and nothing has happened.
  [[nodiscard]] bool GoesOn() const;
  // What has not happened from now on.
  void Expect(Failure nothing) { nothing_ = std::move(nothing); }
  void Count(int events) { events_ += events; }

 private:
  Clock::time_point deadline_;
  int most_;
  Failure nothing_;
  int events_ = 0;
};

// Tells people on standard error what the active device is. Make the Watching object first: as soon as people
// see this, Ctrl-C has to work.
void TellWatched(bool asJson);

}  // namespace tavlyn::ctl
