// Makes a suspended new program load further DLLs before those that it is linked with, by putting them at the
// front of its import table.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace tavlyn::sim {

struct Preloaded {
  std::string file;    // its full path
  std::string symbol;  // one of its exports, so that the entry imports something
};

// False if the program is for another processor, or its memory cannot be changed.
bool Preload(HANDLE process, const std::vector<Preloaded>& libraries);

}  // namespace tavlyn::sim
