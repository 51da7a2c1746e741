// Text files as they are on the disk of the system that the tests run on.
#pragma once

#include <string>
#include <string_view>

namespace tavlyn::test {

#ifdef _WIN32
inline constexpr std::string_view kLineEnd = "\r\n";
#else
inline constexpr std::string_view kLineEnd = "\n";
#endif

// A text written by the library, as it is on disk.
inline std::string OnDisk(std::string_view text) {
  std::string bytes;
  for (const char c : text) {
    if (c == '\n') {
      bytes += kLineEnd;
    } else {
      bytes += c;
    }
  }
  return bytes;
}

}  // namespace tavlyn::test
