#include "platform/windows/backend.h"

namespace tavlyn::platform {

Host& TheHost() {
  static Host host{WindowsClock(),    WindowsMutex(),  WindowsHid(),   WindowsSockets(),
                   WindowsComPorts(), WindowsLibusb(), WindowsPlaces()};
  return host;
}

}  // namespace tavlyn::platform
