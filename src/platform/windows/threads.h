// What the compiler's runtime keeps for threads.
#pragma once

namespace tavlyn::platform {

// Returns the memory that exceptions took, of every thread. This is the last of all steps of an unload.
void FreeThreads();

}  // namespace tavlyn::platform
