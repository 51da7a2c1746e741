#include <cstdlib>
#include <filesystem>

#include "tools/path_names.h"
#include "tools/tavlynctl/config/state_folder.h"

namespace tavlyn::ctl {

std::string StateFolder() {
  const char* local = std::getenv("LOCALAPPDATA");
  return local != nullptr && *local != '\0' ? std::string(local) + "\\tavlynctl" : std::string();
}

// What is below the user's own folder has its rights.
std::error_code CreateOwnFolder(const std::string& path) {
  if (!PathOf(path).is_absolute()) return std::make_error_code(std::errc::no_such_file_or_directory);
  std::error_code error;
  std::filesystem::create_directories(PathOf(path), error);
  return error;
}

}  // namespace tavlyn::ctl
