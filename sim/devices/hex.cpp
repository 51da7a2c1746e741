#include "sim/devices/hex.h"

#include <array>
#include <charconv>
#include <cstddef>

namespace tavlyn::sim {

std::optional<Bytes> ParseHex(std::string_view text) {
  if (text.empty() || text.size() % 2 != 0) return std::nullopt;
  Bytes bytes;
  for (std::size_t i = 0; i < text.size(); i += 2) {
    const char* first = text.data() + i;
    std::uint8_t byte = 0;
    if (std::from_chars(first, first + 2, byte, 16).ptr != first + 2) return std::nullopt;
    bytes.push_back(byte);
  }
  return bytes;
}

std::string HexDigits(std::span<const std::uint8_t> bytes) {
  static constexpr std::array<char, 17> kDigits{"0123456789ABCDEF"};
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += kDigits.at(byte >> 4U);
    text += kDigits.at(byte & 0xFU);
  }
  return text;
}

}  // namespace tavlyn::sim
