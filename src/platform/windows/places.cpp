#include "platform/parts.h"
#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

// In some code pages the second byte of a character can equal a backslash.
bool EndsInSeparator(const char* folder) {
  const UINT page = AreFileApisANSI() != 0 ? CP_ACP : CP_OEMCP;
  bool separator = false;
  while (*folder != '\0') {
    separator = *folder == '\\';
    folder += IsDBCSLeadByteEx(page, static_cast<BYTE>(*folder)) != 0 && folder[1] != '\0' ? 2 : 1;
  }
  return separator;
}

class SystemPlaces final : public Places {
 public:
  // An empty value counts as set, although its length is 0 like that of a missing one.
  bool EnvironmentIsSet(const char* name) override {
    SetLastError(ERROR_SUCCESS);
    return GetEnvironmentVariableA(name, nullptr, 0) != 0 || GetLastError() != ERROR_ENVVAR_NOT_FOUND;
  }

  Path TraceFile() override {
    CreateDirectoryA("C:/TavlynLogs", nullptr);
    return Path("C:\\TavlynLogs\\TavlynApiSdk.log");
  }

  Path CurrentFolder() override {
    char folder[4096];
    const DWORD length = GetCurrentDirectoryA(sizeof folder, folder);
    if (length == 0 || length >= sizeof folder) return {};
    return Path("%s%s", folder, EndsInSeparator(folder) ? "" : "\\");
  }
};

constinit NeverDestroyed<SystemPlaces> placesPart;

}  // namespace

Places& ThePlaces() { return placesPart; }

}  // namespace tavlyn::platform
