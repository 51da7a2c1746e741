// Paths from the names that people give, and back. How such a name encodes characters depends on the system;
// a path that is made from one directly would decode it by rules of its own.
#pragma once

#include <filesystem>
#include <string>

namespace tavlyn {

// Empty if the name cannot be decoded.
std::filesystem::path PathOf(const std::string& name);
std::string NameOfPath(const std::filesystem::path& path);

}  // namespace tavlyn
