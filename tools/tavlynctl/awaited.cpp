#include "tools/tavlynctl/awaited.h"

#include <cmath>
#include <cstdio>
#include <utility>

#include "tools/printable.h"
#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {
namespace {

constexpr Awaited::Seconds kNothingToSpeakOf(3);
constexpr std::chrono::milliseconds kBetweenLooks(200);

std::string Rounded(Awaited::Seconds seconds) {
  return std::to_string(static_cast<int>(std::ceil(seconds.count())));
}

}  // namespace

Awaited::Awaited(const std::string& what, Seconds usual, Seconds most) {
  // list searches for one product after the other.
  static bool said = false;
  if (usual > kNothingToSpeakOf && !std::exchange(said, true)) {
    PrintLine(stderr, what + " takes up to " + Rounded(usual) + " seconds");
  }
  watching_ = std::thread([this, usual, most] { Watch(usual, most); });
}

Awaited::~Awaited() {
  {
    const std::scoped_lock lock(mutex_);
    over_ = true;
  }
  changed_.notify_one();
  watching_.join();
}

// The library waits by the steady clock, which in tests only its waits advance: so this thread reads that
// clock but waits by the other.
void Awaited::Watch(Seconds usual, Seconds most) {
  using std::chrono::steady_clock;
  using std::chrono::system_clock;
  const auto patience = std::chrono::ceil<std::chrono::milliseconds>(usual + kNothingToSpeakOf);
  const auto end = steady_clock::now() + patience;
  auto look = system_clock::now() + patience;
  std::unique_lock lock(mutex_);
  while (!changed_.wait_until(lock, look, [this] { return over_; })) {
    look = system_clock::now() + kBetweenLooks;
    if (steady_clock::now() < end) continue;
    Tell(kProgram, "still waiting for the device; if it has gone, this can take " + Rounded(most) +
                       " seconds; Ctrl-C ends it");
    return;
  }
}

}  // namespace tavlyn::ctl
