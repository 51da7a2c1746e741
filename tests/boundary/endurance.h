// How often a test of endurance does what it does: seldom in the run of a change, the full number in
// scripts/endure.
#pragma once

#include <cstdlib>

namespace tavlyn::boundary {

inline int Times(int full, int few) { return std::getenv("TAVLYN_ENDURE") != nullptr ? full : few; }

}  // namespace tavlyn::boundary
