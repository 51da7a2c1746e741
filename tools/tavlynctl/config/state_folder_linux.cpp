#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "tools/tavlynctl/config/state_folder.h"

namespace tavlyn::ctl {
namespace {

bool IsWholePath(const char* value) { return value != nullptr && value[0] == '/'; }

}  // namespace

std::string StateFolder() {
  const char* state = secure_getenv("XDG_STATE_HOME");
  if (IsWholePath(state)) return std::string(state) + "/tavlynctl";
  const char* home = secure_getenv("HOME");
  return IsWholePath(home) ? std::string(home) + "/.local/state/tavlynctl" : std::string();
}

std::error_code CreateOwnFolder(const std::string& path) {
  if (path.empty() || path[0] != '/') return {ENOENT, std::generic_category()};
  std::filesystem::path made;
  for (const auto& part : std::filesystem::path(path)) {
    made /= part;
    if (mkdir(made.c_str(), S_IRWXU) == 0 || errno == EEXIST) continue;
    std::error_code unknown;
    // A parent that is there may say that nothing may be written, not that it is there.
    const std::error_code error(errno, std::generic_category());
    if (!std::filesystem::is_directory(made, unknown)) return error;
  }
  return {};
}

}  // namespace tavlyn::ctl
