// The steps by which a new file replaces one that people name: made under another name, for its owner alone,
// and renamed when complete.
#pragma once

#include <string>
#include <system_error>

namespace tavlyn {

// One for each system. An error if an existing file may not be written, on Linux also if a stranger's link
// leads to it.
std::error_code TestWritable(const std::string& path);
// Adds a unique name to the path and creates that file. On Linux a Ctrl-C removes it too.
std::error_code CreateOwnFile(std::string& path);
void RemoveOwnFile(const std::string& path);
std::error_code MoveOnto(const std::string& path, const std::string& place);

}  // namespace tavlyn
