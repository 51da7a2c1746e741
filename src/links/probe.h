// How a search over ports or addresses asks whether one of a family's devices answers there. It is asked with
// the candidate's entry active.
#pragma once

#include "core/state.h"

namespace tavlyn {

using Probe = bool (*)();

// The entry that a search fills next, or null when the table is full.
inline tsDevEntry* NextEntry() {
  return shared.DevCnt >= 0 && shared.DevCnt < kTableEntries ? &DevTable[shared.DevCnt] : nullptr;
}

// The entry's port; made when it has none. Null without memory for one.
SerialPort* PortOf(tsDevEntry& entry);

// The same, closed when the entry had it before. A new one is left alone although an open socket makes it
// count as open.
SerialPort* ClosedPort(tsDevEntry& entry);

// The candidate is a device of this kind.
void Count(tsDevEntry& entry, std::uint32_t kind);

// Ends the port of a candidate that did not answer.
void DropPort(tsDevEntry& entry);

}  // namespace tavlyn
