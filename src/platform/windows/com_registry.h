// Which COM numbers the registry's device tree gives to the devices of this library.
#pragma once

#include "platform/platform.h"

namespace tavlyn::platform {

// What ComPorts::FindVirtual says.
void FindVirtualPorts(PortFlags flags);

}  // namespace tavlyn::platform
