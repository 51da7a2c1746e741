// Every command of the magnetic-stripe reader, once. A command is a short text; numbers travel as pairs of
// upper-case hexadecimal digits.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace tavlyn::magstripe {

inline constexpr const char* kDigits = "0123456789ABCDEF";

struct Command {
  const char* name;           // each ? stands for one character of the arguments
  std::uint8_t sent = 0;      // bytes after the name; those that are not given are 0
  const char* begins = "R";   // a good reply begins like this; what else it holds is often passed over
  std::uint8_t received = 0;  // bytes of the reply
  std::uint8_t at = 3;        // where they stand
};

// clang-format off
//                                        name    sent  begins received at
inline constexpr Command kLongBeeps      {"BL?"};                              // ? = count
inline constexpr Command kShortBeeps     {"BS?"};
inline constexpr Command kClearData      {"CD0"};
inline constexpr Command kClearOverrun   {"CQ"};
inline constexpr Command kFactoryReset   {"FD"};
inline constexpr Command kOpenWrite      {"FR"};
inline constexpr Command kCommit         {"FW"};
inline constexpr Command kReadKeysLow    {"G?0",   0,   "R",     9};           // ? = letter of the user field
inline constexpr Command kReadKeysHigh   {"G?1",   0,   "R",     8};
inline constexpr Command kTrackBlock     {"G??00", 0,   "R",    10};           // ?? = track, block
inline constexpr Command kReadSelection  {"G?C",   0,   "R",     5};
inline constexpr Command kReadLeds       {"GL0",   0,   "R",     2};
inline constexpr Command kQueue          {"GQ0",   0,   "R",     0,     4};    // three numbers as digits
inline constexpr Command kReadSystem     {"GS0",   0,   "R",     6};
inline constexpr Command kCounts         {"QDD",   0,   "R",     8};
inline constexpr Command kIdentify       {"QRZ",   0,   "RRZ"};                // 21 bytes of text: the part number
inline constexpr Command kStatus         {"QS0",   0,   "RS",    0,     4};    // one character
inline constexpr Command kVersion        {"QSV",   0,   "R",     4};           // DID, firmware, high bytes first
inline constexpr Command kUptime         {"QUP",   0,   "R",     8};           // uptime, cards read
inline constexpr Command kWriteKeysLow   {"S?0",  10};
inline constexpr Command kWriteKeysHigh  {"S?1",  10};
inline constexpr Command kWriteSelection {"S?C",   5};
inline constexpr Command kWriteLeds      {"SL0",   2};                         // at once, too
inline constexpr Command kWriteSystem    {"SS0",   6};
// clang-format on

// By their names, so that each is found where one looks for it.
static_assert(std::ranges::is_sorted(std::to_array<std::string_view>({
    kLongBeeps.name,     kShortBeeps.name,     kClearData.name,   kClearOverrun.name, kFactoryReset.name,
    kOpenWrite.name,     kCommit.name,         kReadKeysLow.name, kReadKeysHigh.name, kTrackBlock.name,
    kReadSelection.name, kReadLeds.name,       kQueue.name,       kReadSystem.name,   kCounts.name,
    kIdentify.name,      kStatus.name,         kVersion.name,     kUptime.name,       kWriteKeysLow.name,
    kWriteKeysHigh.name, kWriteSelection.name, kWriteLeds.name,   kWriteSystem.name,
})));

}  // namespace tavlyn::magstripe
