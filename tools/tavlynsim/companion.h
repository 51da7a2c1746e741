// A process with which serving ends.
#pragma once

#include <vector>

#include "sim/carriers/net.h"

namespace tavlyn::sim {

class Companion {
 public:
  Companion() = default;
  ~Companion();
  Companion(const Companion&) = delete;
  Companion& operator=(const Companion&) = delete;

  // Of the process that started this one. A parent that ends at this very moment is not missed.
  void BeParent();
  // Of any process; one that is gone has ended.
  void Be(int process);

  // For the owner's loop: what to poll, and after how many milliseconds to look in any case; below 0 means
  // no limit.
  void AddTo(std::vector<pollfd>& polled) const;
  [[nodiscard]] int TurnMs() const;
  // Without a process never.
  [[nodiscard]] bool HasEnded() const;

  // What a new process has to keep open; below 0 nothing.
  [[nodiscard]] net::Socket Kept() const { return watched_; }

 private:
  int process_ = 0;  // 0: none
  net::Socket watched_ = net::kNone;
  bool missed_ = false;
};

}  // namespace tavlyn::sim
