// Every command of the magnetic-stripe reader, once. A command is a short text; numbers travel as pairs of
// upper-case hexadecimal digits.
#pragma once

#include <cstdint>

namespace tavlyn {

inline constexpr const char* kSorbaneDigits = "0123456789ABCDEF";

struct SorbaneCommand {
  const char* name;           // each ? stands for one character of the arguments
  std::uint8_t sent = 0;      // bytes behind the name; those that are not given are 0
  const char* begins = "R";   // a good reply begins like this; what else it holds is often passed over
  std::uint8_t received = 0;  // bytes of the reply
  std::uint8_t at = 3;        // where they stand
};

namespace sorbane {

// clang-format off
//                                               name    sent  begins received at
inline constexpr SorbaneCommand kIdentify       {"QRZ",   0,   "RRZ"};                // 21 bytes of text: the part number
inline constexpr SorbaneCommand kVersion        {"QSV",   0,   "R",     4};           // DID, firmware, high bytes first
inline constexpr SorbaneCommand kReadKeysLow    {"G?0",   0,   "R",     9};           // ? = letter of the user field
inline constexpr SorbaneCommand kReadKeysHigh   {"G?1",   0,   "R",     8};
inline constexpr SorbaneCommand kReadSelection  {"G?C",   0,   "R",     5};
inline constexpr SorbaneCommand kReadSystem     {"GS0",   0,   "R",     6};
inline constexpr SorbaneCommand kReadLeds       {"GL0",   0,   "R",     2};
inline constexpr SorbaneCommand kWriteKeysLow   {"S?0",  10};
inline constexpr SorbaneCommand kWriteKeysHigh  {"S?1",  10};
inline constexpr SorbaneCommand kWriteSelection {"S?C",   5};
inline constexpr SorbaneCommand kWriteSystem    {"SS0",   6};
inline constexpr SorbaneCommand kWriteLeds      {"SL0",   2};                         // at once, too
inline constexpr SorbaneCommand kOpenWrite      {"FR"};
inline constexpr SorbaneCommand kCommit         {"FW"};
inline constexpr SorbaneCommand kFactoryReset   {"FD"};
inline constexpr SorbaneCommand kStatus         {"QS0",   0,   "RS",    0,     4};    // one character
inline constexpr SorbaneCommand kClearData      {"CD0"};
inline constexpr SorbaneCommand kClearOverrun   {"CQ"};
inline constexpr SorbaneCommand kUptime         {"QUP",   0,   "R",     8};           // uptime, cards read
inline constexpr SorbaneCommand kCounts         {"QDD",   0,   "R",     8};
inline constexpr SorbaneCommand kQueue          {"GQ0",   0,   "R",     4,     4};
inline constexpr SorbaneCommand kTrackBlock     {"G??00", 0,   "R",    10};           // ?? = track, block
inline constexpr SorbaneCommand kShortBeeps     {"BS?"};                              // ? = count
inline constexpr SorbaneCommand kLongBeeps      {"BL?"};
// clang-format on

}  // namespace sorbane
}  // namespace tavlyn
