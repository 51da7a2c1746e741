// What the searches of all families share: a pass over the HID devices of a pair, each of which fills entry
// HidFoundCnt, not entry DevCnt.
#pragma once

#include <cstdint>

#include "core/state.h"
#include "hid/enumeration.h"

namespace tavlyn {

// Whether DevTypeSrch lets a search look there: 0 USB, 1 COM ports, 2 Ethernet.
bool Searches(std::int16_t link);

// The entry of the next find, or null when the table is full.
tsDevEntry* NextHidEntry();

// Fills the rest of that entry, whose device is open, and counts it.
void CountHidEntry(tsDevEntry& entry, std::uint32_t kind, const char* path, std::int32_t row);

void SearchHidPair(platform::HidIds pair, HidCallback add);

}  // namespace tavlyn
