// Traffic as tests write it down, one text per exchange:
//   "set 8C 04 07"     a feature report sent, without its trailing zeros
//   "get 8C 04", "get" one fetched; without bytes: whatever it returned
//   "set 80 refused"   one that failed; "get refused" likewise
//   "set [1] 8F"       with a report ID other than 0
//   "sleep 80", "drain nothing", "drain 01 05", "send 23 48", "recv 41", "recv refused", "write FA", "read
//   01"
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sim/transcript.h"

namespace tavlyn::test {

using Lines = std::vector<std::string>;

// The exchanges and waits of a transcript; opening, listing and locking are left out.
Lines TrafficOf(const std::vector<sim::Event>& events);
std::uint64_t TotalSleep(const std::vector<sim::Event>& events);

// Empty when equal (an expected "get", "recv", "read" or "drain" stands for one with any bytes); otherwise a
// difference to read, with - for what is missing and + for what came instead.
std::string Difference(const Lines& expected, const Lines& actual);

// For long expectations.
Lines Times(int count, const Lines& lines);
Lines Join(std::initializer_list<Lines> parts);

}  // namespace tavlyn::test
