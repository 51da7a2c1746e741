#include "platform/windows/backend.h"
#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

class SystemPlaces final : public Places {
 public:
  // An empty value counts as set, and its length is 0 like that of a missing one.
  bool EnvironmentIsSet(const char* name) override {
    SetLastError(ERROR_SUCCESS);
    return GetEnvironmentVariableA(name, nullptr, 0) != 0 || GetLastError() != ERROR_ENVVAR_NOT_FOUND;
  }

  std::string TraceFile() override {
    CreateDirectoryA("C:/TavlynLogs", nullptr);
    return "C:\\TavlynLogs\\TavlynApiSdk.log";
  }

  std::string CurrentFolder() override {
    std::string folder(GetCurrentDirectoryA(0, nullptr), '\0');
    folder.resize(GetCurrentDirectoryA(static_cast<DWORD>(folder.size()), folder.data()));
    if (!folder.empty() && folder.back() != '\\') folder += '\\';
    return folder;
  }
};

}  // namespace

Places& WindowsPlaces() {
  static SystemPlaces places;
  return places;
}

}  // namespace tavlyn::platform
