#include <csignal>

#include "tools/tavlynctl/stopping.h"

namespace tavlyn::ctl {
namespace {

constexpr int kEnding[] = {SIGINT, SIGTERM};

volatile std::sig_atomic_t stopped = 0;

}  // namespace

void NoteStop() {
  for (const int one : kEnding) {
    std::signal(one, [](int signal) {
      stopped = signal;
      for (const int next : kEnding) std::signal(next, SIG_DFL);
    });
  }
}

bool IsStopped() { return stopped != 0; }

void EndStopped() { std::raise(stopped); }

}  // namespace tavlyn::ctl
