// The walk over the device interfaces of one class.
#pragma once

#include <string>

#include "platform/platform.h"
#include "platform/windows/hid_libraries.h"

namespace tavlyn::platform {

class HidWalk {
 public:
  bool Begin(const HidLibraries& libraries, HidClass cls);
  WalkStep Member(const HidLibraries& libraries, int index, std::string& path) const;
  void End(const HidLibraries& libraries);

 private:
  const GUID* class_ = nullptr;
  HDEVINFO set_ = INVALID_HANDLE_VALUE;
};

}  // namespace tavlyn::platform
