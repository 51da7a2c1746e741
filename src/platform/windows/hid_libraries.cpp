#include "platform/windows/hid_libraries.h"

namespace tavlyn::platform {
namespace {

// Nothing but the system's own copy will do: a file of that name beside the application is not looked at.
HMODULE LoadSystemLibrary(const char* name) {
  return LoadLibraryExA(name, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
}

template <typename Function>
bool Bind(HMODULE module, const char* name, Function& function) {
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
  return function != nullptr;
}

bool BindHid(HidLibraries& libraries) {
  HMODULE hid = libraries.hid;
  const bool complete = Bind(hid, "HidD_GetAttributes", libraries.getAttributes) &&
                        Bind(hid, "HidD_GetFeature", libraries.getFeature) &&
                        Bind(hid, "HidD_SetFeature", libraries.setFeature) &&
                        Bind(hid, "HidD_GetHidGuid", libraries.getHidGuid) &&
                        Bind(hid, "HidP_GetCaps", libraries.getCaps) &&
                        Bind(hid, "HidD_GetPreparsedData", libraries.getPreparsedData) &&
                        Bind(hid, "HidD_SetNumInputBuffers", libraries.setNumInputBuffers);
  Bind(hid, "HidD_FlushQueue", libraries.flushQueue);
  return complete;
}

bool BindSetup(HidLibraries& libraries) {
  HMODULE setup = libraries.setup;
  return Bind(setup, "SetupDiGetClassDevsA", libraries.getClassDevs) &&
         Bind(setup, "SetupDiEnumDeviceInterfaces", libraries.enumDeviceInterfaces) &&
         Bind(setup, "SetupDiGetDeviceInterfaceDetailA", libraries.getDeviceInterfaceDetail) &&
         Bind(setup, "SetupDiDestroyDeviceInfoList", libraries.destroyDeviceInfoList);
}

}  // namespace

bool BindHidLibraries(HidLibraries& libraries) {
  libraries = {};
  libraries.hid = LoadSystemLibrary("HID.DLL");
  if (libraries.hid == nullptr) return false;
  if (!BindHid(libraries)) {
    FreeLibrary(libraries.hid);
    libraries = {};
    return false;
  }
  libraries.setup = LoadSystemLibrary("SETUPAPI.DLL");
  if (libraries.setup == nullptr) return false;
  if (!BindSetup(libraries)) {
    FreeLibrary(libraries.setup);
    libraries.setup = nullptr;
    return false;
  }
  return true;
}

void FreeHidLibraries(HidLibraries& libraries) {
  if (libraries.hid != nullptr) FreeLibrary(libraries.hid);
  if (libraries.setup != nullptr) FreeLibrary(libraries.setup);
  libraries = {};
}

}  // namespace tavlyn::platform
