// The environment variables that the library and the tools read or set.
#pragma once

#include <span>

namespace tavlyn {

enum Reader : unsigned { kLibrary = 1, kTavlynctl = 2, kTavlynsim = 4 };

struct Variable {
  const char* name;
  unsigned readers;  // of enum Reader
  const char* text;
};

std::span<const Variable> Variables();

}  // namespace tavlyn
