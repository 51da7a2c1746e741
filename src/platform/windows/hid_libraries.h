// HID.DLL and SETUPAPI.DLL, bound by name at run time: the library loads even on a system that lacks them.
#pragma once

#include "platform/windows/system.h"

// system.h has to come first.
#include <hidsdi.h>
#include <setupapi.h>

namespace tavlyn::platform {

struct HidLibraries {
  void* hid = nullptr;
  decltype(&HidD_GetAttributes) getAttributes = nullptr;
  decltype(&HidD_GetFeature) getFeature = nullptr;
  decltype(&HidD_SetFeature) setFeature = nullptr;
  decltype(&HidD_GetHidGuid) getHidGuid = nullptr;  // required, though the class GUIDs are constants
  decltype(&HidP_GetCaps) getCaps = nullptr;
  decltype(&HidD_GetPreparsedData) getPreparsedData = nullptr;
  decltype(&HidD_SetNumInputBuffers) setNumInputBuffers = nullptr;
  decltype(&HidD_FlushQueue) flushQueue = nullptr;  // may be missing

  void* setup = nullptr;
  decltype(&SetupDiGetClassDevsA) getClassDevs = nullptr;
  decltype(&SetupDiEnumDeviceInterfaces) enumDeviceInterfaces = nullptr;
  decltype(&SetupDiGetDeviceInterfaceDetailA) getDeviceInterfaceDetail = nullptr;
  decltype(&SetupDiDestroyDeviceInfoList) destroyDeviceInfoList = nullptr;
};

// False when one of the two libraries or a required function is missing. HID.DLL stays bound without
// SETUPAPI.DLL.
bool BindHidLibraries(HidLibraries& libraries);
void FreeHidLibraries(HidLibraries& libraries);

}  // namespace tavlyn::platform
