// A file descriptor that its owner closes.
#pragma once

#include <unistd.h>

namespace tavlyn {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int Number() const { return number_; }

 private:
  int number_;
};

}  // namespace tavlyn
