// What a sonar sensor measures.
#pragma once

#include <array>

namespace tavlyn::ctl {

struct Measurement {
  int inches = 0;
  std::array<int, 3> status{};  // bits 0 to 2; the first says that somebody is there
};

// Of the active sensor; takes a quarter of a second. False if it did not answer.
bool Measure(Measurement& measured);

}  // namespace tavlyn::ctl
