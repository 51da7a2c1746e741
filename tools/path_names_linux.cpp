#include "tools/path_names.h"

namespace tavlyn {

std::filesystem::path PathOf(const std::string& name) { return name; }
std::string NameOfPath(const std::filesystem::path& path) { return path.string(); }

}  // namespace tavlyn
