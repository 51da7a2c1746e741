// How long a read from a serial port takes, and what it returns, under every combination of its time-outs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <vector>

namespace tavlyn::boundary {

constexpr std::uint32_t kAllOnes = 0xFFFFFFFF;

struct ReadCase {
  const char* name;
  std::uint32_t interval, multiplier, constant;
  std::size_t length;
  std::vector<int> arrivals;  // milliseconds from the start, a byte each
  std::size_t count;
  int took;
};

inline void PrintTo(const ReadCase& one, std::ostream* out) { *out << one.name; }

// clang-format off
inline const ReadCase kReadCases[] = {
    //  name                         interval  mult const length arrivals         count took
    {"ConstantAloneInSilence",              0,    0,  200,  10, {},                0, 200},
    {"ConstantCountsFromTheStart",          0,    0,  200,  10, {150},             1, 200},
    {"MultiplierAloneInSilence",            0,    5,    0,  40, {},                0, 200},
    {"MultiplierGoesByTheBytesAskedFor",    0,    5,    0,  40, {0, 50},           2, 200},
    {"MultiplierAndConstantAdd",            0,    4,  100,  25, {},                0, 200},
    {"IntervalDoesNotEndSilence",         100,    0,  250,  10, {},                0, 250},
    {"IntervalEndsBehindAByte",           100,    0, 5000,  10, {50},              1, 150},
    {"IntervalCountsFromTheLastByte",     100,    0, 5000,  10, {0, 60, 120},      3, 220},
    {"TotalEndsBeforeTheInterval",        100,    0,  150,  10, {0, 80},           2, 150},
    {"IntervalEndsBeforeTheMultiplier",   100,   50,    0,  10, {20},              1, 120},
    {"IntervalWithMultiplierAndConstant", 100,    5,  100,  20, {90, 150},         2, 200},
    {"IntervalAloneWaitsForTheFirstByte", 100,    0,    0,  10, {300},             1, 400},
    {"NothingSetWaitsForAllBytes",          0,    0,    0,   3, {100, 200, 400},   3, 400},
    {"AllBytesEndARead",                  250,    5,  300,   3, {0, 20, 40},       3,  40},
    {"AllOnesReturnsAtOnce",         kAllOnes,    0,    0,  10, {300},             0,   0},
    {"NoBytesTakeNoTime",                   0,    0,  200,   0, {},                0,   0},
    {"ConstructorSet",                    250,    5,  300,  10, {0},               1, 250},
    {"NormalSet",                         750,    3,  500,   1, {},                0, 503},
    {"FastSet",                            11,    3,  100,  10, {},                0, 130},
    {"QuickSet",                          100,    1,   10,  40, {},                0,  50},
};
// clang-format on

}  // namespace tavlyn::boundary
