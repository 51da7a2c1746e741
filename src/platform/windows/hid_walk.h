// The walk over the device interfaces of one class.
#pragma once

#include "platform/platform.h"
#include "platform/windows/hid_libraries.h"

namespace tavlyn::platform {

class HidWalk {
 public:
  bool Begin(const HidLibraries& libraries, HidClass cls);
  WalkStep Member(const HidLibraries& libraries, int index, const char*& path);
  void End(const HidLibraries& libraries);

 private:
  const GUID* class_ = nullptr;
  HDEVINFO set_ = nullptr;                               // of the current walk
  SP_DEVICE_INTERFACE_DETAIL_DATA_A* detail_ = nullptr;  // of the path that was returned last
};

}  // namespace tavlyn::platform
