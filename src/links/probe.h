// How a search over ports or addresses asks whether one of a family's devices answers there. It is asked with
// the candidate's entry active.
#pragma once

#include "core/state.h"

namespace tavlyn {

using Probe = bool (*)();

// The entry that a search fills next, or null when the table is full.
inline tsDevEntry* NextEntry() { return DevCnt >= 0 && DevCnt < kTableEntries ? &DevTable[DevCnt] : nullptr; }

// The entry's port, closed; made when it has none.
SerialPort& ClosedPort(tsDevEntry& entry);

// Ends the port of a candidate that did not answer.
void DropPort(tsDevEntry& entry);

}  // namespace tavlyn
