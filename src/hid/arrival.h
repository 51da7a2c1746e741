// Adding and removing a device while a program runs. Nothing here takes the lock, and whatever changes the
// table makes entry 0 active.
#pragma once

#include <cstdint>

#include "core/product.h"
#include "core/state.h"

namespace tavlyn {

// How a family recognises a device that has just been plugged in.
struct Arrival {
  platform::HidIds path;         // the pair that the path must belong to
  UsbIdentity device;            // the identity that the device must have
  bool namesFirstEntry = false;  // its handle and path go to entry 0, and a blank entry is added
};

// Returns 1 when the path is such a device, which is then open and in the table, or 0. A device added like
// this has no product kind until the next connect.
std::uint32_t CheckArrival(const char* path, const Arrival& arrival);

// Adds a copy of the entry, or closes a device, and then closes the gaps of the table. Returns 1 when that
// was done. A removal looks at the entry only to see that there is one: it always closes the first open
// device. Without an entry only the gaps are closed.
std::uint32_t AddOrRemoveEntry(const tsDevEntry* entry, bool remove);

}  // namespace tavlyn
