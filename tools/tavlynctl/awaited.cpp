#include "tools/tavlynctl/awaited.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "tools/printable.h"
#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {
namespace {

constexpr Awaited::Seconds kNothingToSpeakOf(3);
constexpr Awaited::Seconds kUncounted(2);
constexpr std::chrono::milliseconds kBetweenLooks(200);

// The one that began last: while a command finds out why there is no device, it searches once more, and the
// search before that has nothing more to say.
Awaited* newest = nullptr;

std::string Rounded(Awaited::Seconds seconds) {
  return std::to_string(static_cast<int>(std::ceil(seconds.count())));
}

}  // namespace

Awaited::Awaited(const std::string& where, Seconds usual, Seconds most)
    : where_(where), most_(most), seen_(ProgressIsSeen()), usual_(usual) {
  if (IsQuiet()) return;
  // list searches for one product after the other.
  static bool said = false;
  if (!seen_ && usual > kNothingToSpeakOf && !std::exchange(said, true)) {
    PrintLine(stderr, "searching " + where_ + " takes up to " + Rounded(usual) + " seconds");
  }
  NowResting();
  newest = this;
  what_ = "searching " + where_;
  // Three readers, or one on a bulk device, need more than a second: then only somebody who sits there is
  // told.
  WaitFor(usual + (seen_ ? Seconds(1) : kNothingToSpeakOf));
  watching_ = std::thread([this] { Watch(); });
}

Awaited::~Awaited() {
  if (!watching_.joinable()) return;
  {
    const std::scoped_lock lock(mutex_);
    over_ = true;
  }
  changed_.notify_one();
  watching_.join();
  if (newest == this) newest = nullptr;
}

void Awaited::Do(const std::string& what) {
  const std::scoped_lock lock(mutex_);
  line_.Clear();
  what_ = what;
  usual_ = Seconds(0);
  resting_ = false;
  WaitFor(kNothingToSpeakOf);
}

void Awaited::Rest() {
  const std::scoped_lock lock(mutex_);
  line_.Clear();
  resting_ = true;
}

void Awaited::WaitFor(Seconds patience) {
  const auto length = std::chrono::ceil<std::chrono::milliseconds>(patience);
  began_ = std::chrono::steady_clock::now();
  end_ = began_ + length;
  look_ = std::chrono::system_clock::now() + (seen_ ? kBetweenLooks : length);
}

// "searching on COM1 to COM8: 4 s, up to 8 s more".
void Awaited::Count() {
  const Seconds passed = std::chrono::steady_clock::now() - began_;
  if (passed < kUncounted && usual_ <= kNothingToSpeakOf) return;
  const bool known = usual_ > passed;
  line_.Show(what_ + ": " + std::to_string(static_cast<int>(passed.count())) + " s" +
             (known ? ", up to " + Rounded(usual_ - passed) + " s more" : ""));
}

// The library waits by the steady clock, which in tests only its waits advance: so this thread reads that
// clock but waits by the other.
void Awaited::Watch() {
  std::unique_lock lock(mutex_);
  bool told = false;
  while (!changed_.wait_until(lock, look_, [this] { return over_; })) {
    const auto now = std::chrono::system_clock::now();
    if (now < look_) continue;
    look_ = now + kBetweenLooks;
    if (resting_) continue;
    if (!told && std::chrono::steady_clock::now() >= end_) {
      line_.Clear();
      Tell(kProgram, "still waiting for a device " + where_ + "; if one has gone, this can take " +
                         Rounded(most_) + " seconds; Ctrl-C ends it");
      told = true;
    }
    if (seen_) {
      Count();
    } else if (told) {
      return;
    }
  }
}

void NowDoing(const std::string& what) {
  if (newest != nullptr) newest->Do(what);
}

void NowResting() {
  if (newest != nullptr) newest->Rest();
}

}  // namespace tavlyn::ctl
