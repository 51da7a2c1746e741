// What this process holds: a leak is a difference.
#pragma once

#include <filesystem>
#include <iterator>
#include <ostream>

#include "tests/boundary/open_handles.h"
#include "tests/boundary/scarce_memory.h"

namespace tavlyn::boundary {

inline long LiveThreads() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/task"),
                       std::filesystem::directory_iterator());
}

struct Held {
  long blocks = LiveBlocks();
  int handles = OpenHandles();
  long threads = LiveThreads();
  bool operator==(const Held&) const = default;
};

inline void PrintTo(const Held& held, std::ostream* out) {
  *out << held.blocks << " blocks, " << held.handles << " handles, " << held.threads << " threads";
}

}  // namespace tavlyn::boundary
