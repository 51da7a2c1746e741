#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/linux/parts.h"

namespace tavlyn::platform {
namespace {

bool IsFolder(const char* value) { return value != nullptr && value[0] == '/'; }

// Where a program keeps state that is not worth a backup; empty when the environment names no such place.
std::filesystem::path StateFolder() {
  const char* state = secure_getenv("XDG_STATE_HOME");
  if (IsFolder(state)) return state;
  const char* home = secure_getenv("HOME");
  return IsFolder(home) ? std::filesystem::path(home) / ".local" / "state" : std::filesystem::path();
}

}  // namespace

bool LinuxPlaces::EnvironmentIsSet(const char* name) { return std::getenv(name) != nullptr; }

std::string LinuxPlaces::TraceFile() {
  const std::filesystem::path state = StateFolder();
  if (state.empty()) return {};
  const std::filesystem::path folder = state / "TavlynLogs";
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  return folder / "TavlynApiSdk.log";
}

std::string LinuxPlaces::CurrentFolder() {
  std::array<char, PATH_MAX> folder;
  if (getcwd(folder.data(), folder.size()) == nullptr) return {};
  return std::string(folder.data()) + '/';
}

}  // namespace tavlyn::platform
