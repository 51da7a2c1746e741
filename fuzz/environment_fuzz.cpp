// The variables that the Linux backend looks at, with any values. The first byte says which of them are set;
// each value ends at the next NUL. Nothing is written: folders are not made, and files are kept in memory.
#include <sys/stat.h>

#include <array>
#include <cstdlib>
#include <string>

#include "api.h"
#include "core/front/load.h"
#include "fuzz/input.h"
#include "platform/linux/com_paths.h"
#include "platform/parts.h"
#include "platform/system_library.h"

extern "C" int mkdir(const char* path, mode_t /*mode*/) noexcept {
  tavlyn::fuzz::Require(path[0] == '/');
  return -1;
}

namespace tavlyn::platform {

// None is loaded, whatever a variable names.
void* LoadSystemLibrary(const char*) { return nullptr; }
void FreeSystemLibrary(void*) {}
void* AddressIn(void*, const char*) { return nullptr; }

}  // namespace tavlyn::platform

namespace tavlyn::fuzz {
namespace {

constexpr std::array kVariables = {"TAVLYNAPI_LOGGING", "XDG_STATE_HOME", "HOME", "TAVLYNAPI_PORT_DIR",
                                   "TAVLYNAPI_LIBUSB"};

void Set(Input& input) {
  const std::uint8_t set = input.Byte();
  for (std::size_t at = 0; at < kVariables.size(); ++at) {
    if ((set >> at & 1) == 0) {
      unsetenv(kVariables[at]);
    } else {
      setenv(kVariables[at], std::string(input.Text('\0')).c_str(), 1);
    }
  }
}

void CheckPlaces() {
  const platform::Path trace = platform::ThePlaces().TraceFile();
  Require(trace.IsEmpty() || (trace.View().starts_with('/') && trace.View().ends_with("/TavlynApiSdk.log")));
  for (const std::uint16_t number : std::array<std::uint16_t, 3>{1, 3, 256}) platform::ComPath(number);
  std::array<std::uint8_t, platform::kHighestCom + 1> flags{};
  platform::TheComPorts().FindVirtual(flags);
  Require(flags[0] == 0);
}

void Use(Input input) {
  Set(input);
  Load();
  Require(SetMarkerFunction(nullptr) == (platform::ThePlaces().EnvironmentIsSet(kVariables[0]) ? 1U : 0U));
  CheckPlaces();
  SetConnectProduct(1);
  SetDevTypeSrch(0);
  USBConnect(nullptr);
  ComConnectPort(3, nullptr);
  Unload();
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Use({data, size});
  return 0;
}
