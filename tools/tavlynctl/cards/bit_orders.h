// The orders in which the bits of a card may be read as a number.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tavlyn::ctl {

// For each bit that is read, its place in the card. A place beyond the card, in the byte that its highest
// bits do not fill, is kBeyond and reads as 0.
using Places = std::vector<std::size_t>;
inline constexpr std::size_t kBeyond = std::string::npos;

struct BitOrder {
  const char* name;
  bool ofBytes;  // leaves the bits within a byte in their order
  Places (*places)(std::size_t bits);
};
std::span<const BitOrder> BitOrders();

// Of a card's bits as it sends them, a character each.
std::string InOrder(std::string_view bits, const Places& places);

// What bits say that are read highest first; ValueOf 64 at most.
std::uint64_t ValueOf(std::string_view bits);
std::string Decimal(std::string_view bits);
// Two digits for each byte.
std::string HexDigits(std::string_view bits);

}  // namespace tavlyn::ctl
