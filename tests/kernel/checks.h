// One line of output for each check; whoever runs this program counts the lines.
#pragma once

#include <cstdio>
#include <string>

namespace tavlyn::kernel {

inline int failedChecks = 0;

// Begins with "ok" or "FAIL".
inline void Check(bool held, const std::string& what) {
  if (!held) ++failedChecks;
  std::printf("%s %s\n", held ? "ok  " : "FAIL", what.c_str());
  std::fflush(stdout);
}

// The same, showing what came instead of what was wanted.
inline void CheckEqual(long long got, long long wanted, const std::string& what) {
  const bool held = got == wanted;
  Check(held, held ? what : what + ": " + std::to_string(got) + ", not " + std::to_string(wanted));
}

inline void CheckEqual(const std::string& got, const std::string& wanted, const std::string& what) {
  const bool held = got == wanted;
  Check(held, held ? what : what + ": \"" + got + "\", not \"" + wanted + "\"");
}

}  // namespace tavlyn::kernel
