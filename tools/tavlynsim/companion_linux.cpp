#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "tools/tavlynsim/companion.h"

namespace tavlyn::sim {
namespace {

constexpr int kLookMs = 500;  // on a kernel that cannot poll for processes

}  // namespace

Companion::~Companion() {
  if (watched_ >= 0) close(watched_);
}

// A parent that has ended leaves its children to another process.
void Companion::BeParent() {
  const pid_t parent = getppid();
  Be(parent);
  missed_ = missed_ || getppid() != parent;
}

// The descriptor stays that of the process, even if its number is given to another one.
void Companion::Be(int process) {
  process_ = process;
  watched_ = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
  missed_ = watched_ < 0 && errno == ESRCH;
}

void Companion::AddTo(std::vector<pollfd>& polled) const { polled.push_back({watched_, POLLIN, 0}); }

int Companion::TurnMs() const { return process_ != 0 && watched_ < 0 ? kLookMs : -1; }

bool Companion::HasEnded() const {
  if (process_ == 0 || missed_) return missed_;
  if (watched_ < 0) return kill(process_, 0) != 0 && errno == ESRCH;
  pollfd one{watched_, POLLIN, 0};
  return poll(&one, 1, 0) > 0;
}

}  // namespace tavlyn::sim
