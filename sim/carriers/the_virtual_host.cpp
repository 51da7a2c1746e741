// The host of a program on the simulated system.
#include "sim/carriers/virtual_host.h"

namespace tavlyn::platform {

Host& TheHost() {
  auto& simulated = sim::VirtualHost::Instance();
  static Host host{simulated.clock, simulated.mutex, simulated.hid,   simulated.sockets,
                   simulated.ports, simulated.usb,   simulated.places};
  return host;
}

}  // namespace tavlyn::platform
