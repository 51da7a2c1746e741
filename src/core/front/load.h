// What happens once when the library comes into a process and once when it leaves.
#pragma once

namespace tavlyn {

void Load();
void Unload();

}  // namespace tavlyn
