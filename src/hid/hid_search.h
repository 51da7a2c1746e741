// What the searches of all families share: a pass over the HID devices of an identity. A find fills entry
// HidFoundCnt, not entry DevCnt.
#pragma once

#include <cstdint>

#include "core/state.h"
#include "hid/enumeration.h"

namespace tavlyn {

// The entry of the next find, or null when the table is full.
tsDevEntry* NextHidEntry();

// Fills the rest of that entry, whose device is open, and counts it.
void CountHidEntry(tsDevEntry& entry, std::uint32_t kind, const char* path, std::int32_t row);

void SearchHidDevices(const UsbIdentity& identity, HidCallback add);

}  // namespace tavlyn
