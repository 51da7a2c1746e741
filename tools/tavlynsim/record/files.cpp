#include "tools/tavlynsim/record/files.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tools/own_file.h"
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

std::string WriteWhole(const std::string& name, const std::string& text) {
  std::error_code none;
  const auto path = std::filesystem::weakly_canonical(std::filesystem::absolute(PathOf(name), none), none);
  // A device is never replaced.
  if (std::filesystem::exists(path, none) && !std::filesystem::is_regular_file(path, none))
    return "not a file";
  std::string beside = NameOfPath(path.parent_path() / ".tavlynsim-");
  if (const auto error = TestWritable(NameOfPath(path))) return "cannot be written: " + error.message();
  if (const auto error = CreateOwnFile(beside)) return "cannot be written: " + error.message();
  std::ofstream file(PathOf(beside), std::ios::binary);
  file << text;
  file.close();
  std::string problem;
  if (!file) {
    problem = "cannot be written completely and stays as it was; is the disk full?";
  } else if (const auto error = MoveOnto(beside, NameOfPath(path))) {
    problem = "cannot be written: " + error.message();
  }
  RemoveOwnFile(beside);
  return problem;
}

}  // namespace tavlyn::sim
