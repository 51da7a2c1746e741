// Which files the COM numbers are on Linux. COM n is the file com<n> in the folder that TAVLYNAPI_PORT_DIR
// names; without it /dev/tavlyn/com<n>, else /dev/ttyS<n-1>.
#pragma once

#include <cstdint>

#include "platform/path.h"
#include "platform/platform.h"

namespace tavlyn::platform {

Path ComPath(std::uint16_t number);

// Does what ComPorts::FindVirtual promises.
void FindVirtualPorts(PortFlags flags);

}  // namespace tavlyn::platform
