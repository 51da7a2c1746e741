// Which COM numbers the registry's device tree assigns to this library's devices.
#pragma once

#include "platform/platform.h"

namespace tavlyn::platform {

// Does what ComPorts::FindVirtual promises.
void FindVirtualPorts(PortFlags flags);

}  // namespace tavlyn::platform
