// What must hold for every input.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tavlyn::fuzz {

// Written to the descriptor: a target may have closed the stream.
inline void Require(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (holds) return;
  dprintf(STDERR_FILENO, "%s:%d: does not hold\n", file, line);
  std::abort();
}

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace tavlyn::fuzz
