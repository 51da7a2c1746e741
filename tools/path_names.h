// Paths from the names that people give, and back. What stands for a character in such a name is the system's
// matter; paths made of it without a word would take it by rules of their own.
#pragma once

#include <filesystem>
#include <string>

namespace tavlyn {

// Empty when the name means nothing.
std::filesystem::path PathOf(const std::string& name);
std::string NameOfPath(const std::filesystem::path& path);

}  // namespace tavlyn
