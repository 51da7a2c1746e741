// What all searches over ports and addresses share.
#pragma once

#include <cstdint>

#include "core/state.h"

namespace tavlyn {

// What a search looks for: with the candidate's entry active, one of these answers.
struct Probe {
  bool (*answers)();
  std::uint32_t kind;
};

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
void CloseAndDropPort(tsDevEntry& entry);

// Lets go of the port that the entry may have, without closing it first: DTR and the socket stay as they are.
void ReleasePort(tsDevEntry& entry);

}  // namespace tavlyn
