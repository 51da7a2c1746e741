// Memory that runs out for the library alone. What it allocates is counted, by itself and by the functions of
// the C library that it calls, and one of these allocations can be denied. The program that links this takes
// the place of malloc. All of it is for one thread.
#pragma once

namespace tavlyn::boundary {

// A sanitizer's malloc is its own.
bool MemoryCanBeScarce();

enum class Denial { kOnce, kFromThereOn };

// Denies the allocation of this number, from 1, counted from here on.
void Deny(int number, Denial denial);
// Denies no more. True: one was denied.
bool Grant();

// Of the whole process.
long LiveBlocks();

}  // namespace tavlyn::boundary
