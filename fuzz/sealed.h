// Key-load files with the trailer that fits them.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

#include "files/crc.h"
#include "fuzz/memory_file.h"

namespace tavlyn::fuzz {

inline constexpr const char* kEndLine = "[EOF]\r\n";

// All but the end of the last line.
inline std::string AlmostSealed(std::string_view text) {
  CRC crc;
  std::uint32_t sum = 0;
  crc.Begin();
  crc.Add(text);
  Require(crc.Compute(sum) == 0);
  std::array<char, 9> value{};
  std::snprintf(value.data(), value.size(), sum != 0 ? "%08X" : "%X", static_cast<unsigned>(sum));
  return std::string(text) + kEndLine + "iEndOfIniFile=" + value.data();
}

inline std::string SealedItems(std::string_view text) { return AlmostSealed(text) + "\r\n"; }

}  // namespace tavlyn::fuzz
