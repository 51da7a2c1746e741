#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>

#include "platform/parts.h"

namespace tavlyn::platform {
namespace {

bool IsFolder(const char* value) { return value != nullptr && value[0] == '/'; }

// Where a program keeps state that is not worth a backup; empty when the environment names no such place.
Path StateFolder() {
  const char* state = secure_getenv("XDG_STATE_HOME");
  if (IsFolder(state)) return Path("%s", state);
  const char* home = secure_getenv("HOME");
  return IsFolder(home) ? Path("%s/.local/state", home) : Path();
}

// Creates a folder and its missing parents. A failure shows when the file is opened.
void MakeFolder(const Path& folder) {
  const std::string_view whole = folder.View();
  for (std::size_t end = whole.find('/', 1); end != std::string_view::npos; end = whole.find('/', end + 1)) {
    Path parent = folder;
    parent.Cut(end);
    mkdir(parent.c_str(), 0700);
  }
  mkdir(folder.c_str(), 0700);
}

class SystemPlaces final : public Places {
 public:
  bool EnvironmentIsSet(const char* name) override { return secure_getenv(name) != nullptr; }

  Path TraceFile() override {
    const Path state = StateFolder();
    const Path folder = state.IsEmpty() ? Path() : Path("%s/TavlynLogs", state.c_str());
    if (folder.IsEmpty()) return {};
    MakeFolder(folder);
    return Path("%s/TavlynApiSdk.log", folder.c_str());
  }

  Path CurrentFolder() override {
    char folder[PATH_MAX];
    return getcwd(folder, sizeof folder) != nullptr ? Path("%s/", folder) : Path();
  }
};

constinit NeverDestroyed<SystemPlaces> placesPart;

}  // namespace

Places& ThePlaces() { return placesPart; }

}  // namespace tavlyn::platform
