// Which COM numbers the registry's device tree gives to the devices of this library.
#pragma once

#include <cstdint>
#include <span>

namespace tavlyn::platform {

void FindVirtualPorts(PortFlags flags);

}  // namespace tavlyn::platform
