// What happens once when the library comes into a process and once when it leaves.
#pragma once

namespace tavlyn {

void Load();
void Unload();

// All of an unload that an ending process may still do: nothing is asked of the system and no lock waited
// for.
void WipeKeys();

}  // namespace tavlyn
