// What all searches over ports and addresses share.
#pragma once

#include <cstdint>

#include "core/state.h"

namespace tavlyn {

// What a search looks for: answers() is called with the candidate's entry active.
struct Probe {
  bool (*answers)();
  std::uint32_t kind;
};

// The entry that a search fills next, or null when the table is full.
inline tsDevEntry* NextEntry() {
  return shared.DevCnt >= 0 && shared.DevCnt < kTableEntries ? &DevTable[shared.DevCnt] : nullptr;
}

// The entry's port, which is created when it has none. Null without memory for it.
SerialPort* PortOf(tsDevEntry& entry);

// The same, closed if the entry already had it. A new one is left alone although an open socket makes it
// count as open.
SerialPort* ClosedPort(tsDevEntry& entry);

// Counts the candidate as a device of this kind.
void Count(tsDevEntry& entry, std::uint32_t kind);

// Closes the port of a candidate that did not answer, and deletes it.
void CloseAndDropPort(tsDevEntry& entry);

// Deletes the port that the entry may have without the usual close: DTR and the socket stay as they are.
void ReleasePort(tsDevEntry& entry);

}  // namespace tavlyn
