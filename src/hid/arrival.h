// One device more or one less in the table while a program runs. All of this is unlocked, and all of it that
// changes the table makes entry 0 active.
#pragma once

#include <cstdint>

#include "core/state.h"

namespace tavlyn {

// The arrival checks of the families: 1 when the path is a device of theirs, opened and added, or 0. What is
// added has no product kind before the next connect.
std::uint32_t CheckReaderArrival(const char* path);
std::uint32_t CheckMagstripeArrival(const char* path);
std::uint32_t CheckSonarArrival(const char* path);

// Adds a copy of the entry, or closes a device, and then closes the gaps of the table. 1 when that was done.
// A removal looks at the entry only to see that there is one: it always closes the first open device.
// Without an entry only the gaps are closed.
std::uint32_t AddOrRemoveEntry(const tsDevEntry* entry, bool remove);

}  // namespace tavlyn
