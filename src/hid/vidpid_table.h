// The USB identities of devices besides the one that a search looks for, read at each connect from
// TavlynVIDPID.txt or, without that file, from built-in lines.
#pragma once

#include <cstdint>

#include "core/product.h"
#include "core/state.h"
#include "platform/platform.h"

namespace tavlyn {

inline constexpr std::size_t kVendorNameLength = 45;

// Clears the rows, but not the count, which only USBConnect and USBDisconnect reset: after another kind of
// connect the new rows are stored after the old count, and the table looks empty.
void LoadVidPidTable();

// Parses one line of the file, which adds at most one row.
void ParseVidPidLine(const char* text);

inline constexpr platform::HidIds kReportId1Pair{0x7A31, 0x3BFB};

constexpr bool SameIds(platform::HidIds a, platform::HidIds b) { return a.vid == b.vid && a.pid == b.pid; }

inline tsVidPidRow& VidPidRowAt(std::int32_t row) {
  return shared.vidPid.VidPidTable[static_cast<std::size_t>(row)];
}

// The first row from start on that holds the pair, or -1. A PID of 0 matches no row.
std::int32_t FindVidPidRow(platform::HidIds ids, std::int32_t start);

}  // namespace tavlyn
