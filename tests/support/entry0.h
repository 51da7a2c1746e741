// The table entry of a device that a test leaves alone.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <vector>

#include "core/state.h"

namespace tavlyn::test {

class Entry0 {
 public:
  void Note() { Take(noted_); }
  void ExpectAsNoted() const {
    std::vector<std::byte> now;
    Take(now);
    EXPECT_TRUE(noted_ == now) << "the entry of the other reader is not what it was";
  }

 private:
  static void Take(std::vector<std::byte>& bytes) {
    bytes.resize(sizeof(tsDevEntry));
    std::memcpy(bytes.data(), &DevTable[0], bytes.size());
  }

  std::vector<std::byte> noted_;
};

}  // namespace tavlyn::test
