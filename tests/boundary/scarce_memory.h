// Memory that runs out for the library only. Allocations by the library and by the C functions that it calls
// are counted, and one of them can be denied. The program that links this replaces malloc. All of it is for
// one thread.
#pragma once

namespace tavlyn::boundary {

// A sanitizer has its own malloc.
bool MemoryCanBeScarce();

enum class Denial { kOnce, kFromThereOn };

// Denies the allocation with this number, counted from 1 from here on.
void Deny(int number, Denial denial);
// Stops denying. True if one was denied.
bool Grant();

// Of the whole process.
long LiveBlocks();

}  // namespace tavlyn::boundary
