// Text files as they lie on the disk of the system that the tests run on.
#pragma once

#include <string>
#include <string_view>

namespace tavlyn::test {

#ifdef _WIN32
inline constexpr std::string_view kLineEnd = "\r\n";
#else
inline constexpr std::string_view kLineEnd = "\n";
#endif

// What a text becomes that the library writes.
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
