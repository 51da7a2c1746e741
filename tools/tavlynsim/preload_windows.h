// Makes a program that has not begun yet load further DLLs, before those that it is linked with: they are put
// in front of its import table.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tavlyn::sim {

struct Preloaded {
  std::string file;    // its full path
  std::string symbol;  // one of its exports, so that the entry imports something
};

// False: the program is none of this kind of processor, or its memory cannot be changed.
bool Preload(HANDLE process, const std::vector<Preloaded>& libraries);

}  // namespace tavlyn::sim
