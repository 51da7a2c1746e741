#include "tools/tavlynctl/watch/watching.h"

#include <cstdio>
#include <utility>

#include "tools/printable.h"
#include "tools/tavlynctl/process.h"
#include "tools/tavlynctl/session.h"

namespace tavlyn::ctl {

Clock::time_point After(double seconds) {
  return Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

Failure NoCard() { return {kNoCard, "no card came in time"}; }

Watching::Watching(std::optional<double> seconds, int most, Failure nothing)
    : deadline_(seconds ? After(*seconds) : Clock::time_point::max()),
      most_(most),
      nothing_(std::move(nothing)) {
  NoteStop();
  LetPipesBreak();
}

bool Watching::GoesOn() const {
  if (IsStopped() || (most_ != 0 && events_ >= most_)) return false;
  if (Clock::now() < deadline_) return true;
  if (events_ == 0) throw Failure(nothing_);
  return false;
}

void TellWatched(bool asJson) {
  if (!asJson) PrintLine(stderr, "watching " + ActiveDeviceName());
}

}  // namespace tavlyn::ctl
