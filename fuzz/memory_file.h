// The files of a fuzzer: they are kept in memory, so that no input reaches the disk and none waits for it.
#pragma once

#include <string>
#include <string_view>

#include "fuzz/require.h"

namespace tavlyn::fuzz {

void RemoveMemoryFiles();
// Creates the file, or replaces what it held.
void FillMemoryFile(std::string_view path, std::string_view text);
// Empty also when there is no such file.
std::string TextOfMemoryFile(std::string_view path);

// One that is always there.
class MemoryFile {
 public:
  static constexpr std::string_view kName = "file";
  [[nodiscard]] static const char* Path() { return kName.data(); }
  static void Fill(std::string_view text) { FillMemoryFile(Path(), text); }
  [[nodiscard]] static std::string Text() { return TextOfMemoryFile(Path()); }
};

}  // namespace tavlyn::fuzz
