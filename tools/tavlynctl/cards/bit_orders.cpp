#include "tools/tavlynctl/cards/bit_orders.h"

#include "tools/tavlynctl/hex.h"

namespace tavlyn::ctl {
namespace {

constexpr std::size_t kByteBits = 8;

Places AsSent(std::size_t bits) {
  Places places(bits);
  for (std::size_t at = 0; at < bits; ++at) places[at] = at;
  return places;
}

Places LowestBitFirst(std::size_t bits) {
  const Places places = AsSent(bits);
  return {places.rbegin(), places.rend()};
}

Places LowestByteFirst(std::size_t bits) {
  Places places;
  for (std::size_t below = 0; below < bits; below += kByteBits) {
    for (std::size_t bit = below + kByteBits; bit-- != below;) {
      places.push_back(bit < bits ? bits - 1 - bit : kBeyond);
    }
  }
  return places;
}

Places EachByteReversed(std::size_t bits) {
  const Places places = LowestByteFirst(bits);
  return {places.rbegin(), places.rend()};
}

constexpr BitOrder kOrders[] = {{"as sent", true, AsSent},
                                {"lowest bit first", false, LowestBitFirst},
                                {"bytes reversed", true, LowestByteFirst},
                                {"bits of each byte reversed", false, EachByteReversed}};

}  // namespace

std::span<const BitOrder> BitOrders() { return kOrders; }

std::string InOrder(std::string_view bits, const Places& places) {
  std::string read;
  for (const std::size_t at : places) read += at == kBeyond ? '0' : bits[at];
  return read;
}

std::uint64_t ValueOf(std::string_view bits) {
  std::uint64_t value = 0;
  for (const char bit : bits) value = value << 1U | (bit == '1' ? 1U : 0U);
  return value;
}

std::string Decimal(std::string_view bits) {
  std::string digits = "0";  // the lowest first
  for (const char bit : bits) {
    int carry = bit == '1' ? 1 : 0;
    for (char& digit : digits) {
      const int doubled = 2 * (digit - '0') + carry;
      digit = static_cast<char>('0' + doubled % 10);
      carry = doubled / 10;
    }
    if (carry != 0) digits += '1';
  }
  return {digits.rbegin(), digits.rend()};
}

std::string HexDigits(std::string_view bits) {
  std::string text;
  for (std::size_t begin = 0, end = bits.size() % kByteBits; begin < bits.size();
       begin = end, end += kByteBits) {
    if (end != 0) text += Hex(static_cast<unsigned>(ValueOf(bits.substr(begin, end - begin))), 2);
  }
  return text;
}

}  // namespace tavlyn::ctl
