// What the compiler's runtime keeps of threads.
#pragma once

namespace tavlyn::platform {

// Gives back what exceptions took, of every thread. Of all the steps of an unload this is the last.
void FreeThreads();

}  // namespace tavlyn::platform
