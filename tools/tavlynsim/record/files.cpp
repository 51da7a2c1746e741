#include "tools/tavlynsim/record/files.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tools/path_names.h"

namespace tavlyn::sim {

std::optional<std::string> TextOfFile(const std::string& name, std::string& problem) {
  std::error_code error;
  const std::filesystem::path path = PathOf(name);
  if (!std::filesystem::is_regular_file(path, error)) {  // an open of a pipe would wait
    problem = name + ": " + (error ? error.message() : "not a file");
    return std::nullopt;
  }
  std::ifstream file(path, std::ios::binary);
  if (file) return std::string(std::istreambuf_iterator<char>(file), {});
  problem = name + ": " + std::strerror(errno);
  return std::nullopt;
}

}  // namespace tavlyn::sim
