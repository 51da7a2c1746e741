#include "tools/tavlynctl/awaited.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "tools/printable.h"
#include "tools/tavlynctl/output.h"
#include "tools/terminal.h"

namespace tavlyn::ctl {
namespace {

constexpr Awaited::Seconds kNothingToSpeakOf(3);
constexpr std::chrono::milliseconds kBetweenLooks(200);

// Three readers, or one on a bulk device, need more than a second: then only somebody who sits there is told.
Awaited::Seconds Patience() { return ErrorsAreOnTerminal() ? Awaited::Seconds(1) : kNothingToSpeakOf; }

std::string Rounded(Awaited::Seconds seconds) {
  return std::to_string(static_cast<int>(std::ceil(seconds.count())));
}

}  // namespace

Awaited::Awaited(const std::string& where, Seconds usual, Seconds most) : where_(where) {
  // list searches for one product after the other.
  static bool said = false;
  if (usual > kNothingToSpeakOf && !std::exchange(said, true)) {
    PrintLine(stderr, "searching " + where_ + " takes up to " + Rounded(usual) + " seconds");
  }
  WaitFor(usual + Patience());
  watching_ = std::thread([this, most] { Watch(most); });
}

Awaited::~Awaited() {
  {
    const std::scoped_lock lock(mutex_);
    over_ = true;
  }
  changed_.notify_one();
  watching_.join();
}

void Awaited::Connected() {
  const std::scoped_lock lock(mutex_);
  WaitFor(kNothingToSpeakOf);
}

void Awaited::WaitFor(Seconds patience) {
  const auto length = std::chrono::ceil<std::chrono::milliseconds>(patience);
  end_ = std::chrono::steady_clock::now() + length;
  look_ = std::chrono::system_clock::now() + length;
}

// The library waits by the steady clock, which in tests only its waits advance: so this thread reads that
// clock but waits by the other.
void Awaited::Watch(Seconds most) {
  std::unique_lock lock(mutex_);
  while (!changed_.wait_until(lock, look_, [this] { return over_; })) {
    const auto now = std::chrono::system_clock::now();
    if (now < look_) continue;
    look_ = now + kBetweenLooks;
    if (std::chrono::steady_clock::now() < end_) continue;
    Tell(kProgram, "still waiting for a device " + where_ + "; if one has gone, this can take " +
                       Rounded(most) + " seconds; Ctrl-C ends it");
    return;
  }
}

}  // namespace tavlyn::ctl
