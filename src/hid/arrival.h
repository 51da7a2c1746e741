// One device more or one less in the table while a program runs. All of this is unlocked, and all of it that
// changes the table makes entry 0 active.
#pragma once

#include <cstdint>

#include "core/product.h"
#include "core/state.h"

namespace tavlyn {

// By what a family knows a device that has just been plugged in.
struct Arrival {
  platform::HidIds path;         // what the path must tell
  UsbIdentity device;            // what the device must tell
  bool namesFirstEntry = false;  // its handle and path go to entry 0, and a blank entry behind the others
};

// 1 when the path is such a device, opened and added, or 0. What is added has no product kind before the next
// connect.
std::uint32_t CheckArrival(const char* path, const Arrival& arrival);

// Adds a copy of the entry, or closes a device, and then closes the gaps of the table. 1 when that was done.
// A removal looks at the entry only to see that there is one: it always closes the first open device.
// Without an entry only the gaps are closed.
std::uint32_t AddOrRemoveEntry(const tsDevEntry* entry, bool remove);

}  // namespace tavlyn
