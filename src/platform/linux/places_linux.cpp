#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>

#include "platform/linux/parts.h"

namespace tavlyn::platform {
namespace {

bool IsFolder(const char* value) { return value != nullptr && value[0] == '/'; }

// Where a program keeps state that is not worth a backup; empty when the environment names no such place.
std::string StateFolder() {
  const char* state = secure_getenv("XDG_STATE_HOME");
  if (IsFolder(state)) return state;
  const char* home = secure_getenv("HOME");
  return IsFolder(home) ? std::string(home) + "/.local/state" : std::string();
}

// With its missing parents. What cannot be made shows when the file is opened.
void MakeFolder(const std::string& folder) {
  for (std::size_t end = folder.find('/', 1); end != std::string::npos; end = folder.find('/', end + 1)) {
    mkdir(folder.substr(0, end).c_str(), 0700);
  }
  mkdir(folder.c_str(), 0700);
}

}  // namespace

std::string RealPath(const std::string& path) {
  char real[PATH_MAX];
  return realpath(path.c_str(), real) != nullptr ? std::string(real) : std::string();
}

bool LinuxPlaces::EnvironmentIsSet(const char* name) { return std::getenv(name) != nullptr; }

std::string LinuxPlaces::TraceFile() {
  const std::string state = StateFolder();
  if (state.empty()) return {};
  const std::string folder = state + "/TavlynLogs";
  MakeFolder(folder);
  return folder + "/TavlynApiSdk.log";
}

std::string LinuxPlaces::CurrentFolder() {
  std::array<char, PATH_MAX> folder;
  if (getcwd(folder.data(), folder.size()) == nullptr) return {};
  return std::string(folder.data()) + '/';
}

}  // namespace tavlyn::platform
