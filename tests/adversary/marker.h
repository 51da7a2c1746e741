// Keys that no other bytes resemble. A program that searches its memory for one computes it byte by byte and
// never stores it, so that it does not find itself.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace tavlyn::adversary {

// Two keys: what a search finds of both after the same deed is no accident.
enum class Marker : std::uint8_t { kFirst, kSecond };

inline constexpr std::size_t kMarkerBytes = 128;

constexpr std::uint8_t MarkerByte(Marker marker, std::size_t at) {
  return marker == Marker::kFirst ? static_cast<std::uint8_t>(0xC1 + at * 37)
                                  : static_cast<std::uint8_t>(0x3E + at * 53);
}

// For programs that are not searched.
inline std::string MarkerText(Marker marker, std::size_t bytes, const char* separator) {
  std::string text;
  for (std::size_t at = 0; at < bytes; ++at) {
    std::array<char, 3> hex{};
    std::snprintf(hex.data(), hex.size(), "%02X", MarkerByte(marker, at));
    text += (at == 0 ? "" : separator) + std::string(hex.data());
  }
  return text;
}

}  // namespace tavlyn::adversary
