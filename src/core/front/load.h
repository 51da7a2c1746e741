// What happens when the library is loaded into a process, and when it is unloaded.
#pragma once

namespace tavlyn {

void Load();
void Unload();

// The part of an unload that is left for a process that ends: it asks nothing of the system and waits for no
// lock.
void WipeKeys();

}  // namespace tavlyn
