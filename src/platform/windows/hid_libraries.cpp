#include "platform/windows/hid_libraries.h"

#include "platform/system_library.h"

namespace tavlyn::platform {
namespace {

bool BindHid(HidLibraries& libraries) {
  void* hid = libraries.hid;
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
  void* setup = libraries.setup;
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
    FreeSystemLibrary(libraries.hid);
    libraries = {};
    return false;
  }
  libraries.setup = LoadSystemLibrary("SETUPAPI.DLL");
  if (libraries.setup == nullptr) return false;
  if (!BindSetup(libraries)) {
    FreeSystemLibrary(libraries.setup);
    libraries.setup = nullptr;
    return false;
  }
  return true;
}

void FreeHidLibraries(HidLibraries& libraries) {
  if (libraries.hid != nullptr) FreeSystemLibrary(libraries.hid);
  if (libraries.setup != nullptr) FreeSystemLibrary(libraries.setup);
  libraries = {};
}

}  // namespace tavlyn::platform
