// Ends a poll() of this process from another thread.
#pragma once

#include "sim/carriers/net.h"

namespace tavlyn::sim {

class Waker {
 public:
  Waker();
  ~Waker();
  Waker(const Waker&) = delete;
  Waker& operator=(const Waker&) = delete;

  // Becomes readable by Wake, until Clear.
  [[nodiscard]] net::Socket Polled() const { return polled_; }
  void Wake() const;
  void Clear() const;

 private:
  net::Socket polled_;
};

}  // namespace tavlyn::sim
