#include "platform/parts.h"

namespace tavlyn::platform {

Host& TheHost() {
  static Host host{TheClock(), TheMutex(), TheHid(), TheSockets(), TheComPorts(), TheLibusb(), ThePlaces()};
  return host;
}

}  // namespace tavlyn::platform
