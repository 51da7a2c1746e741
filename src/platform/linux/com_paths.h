// Where the COM numbers lie on this system.
#pragma once

#include <cstdint>

#include "platform/path.h"

namespace tavlyn::platform {

Path ComPath(std::uint16_t number);

}  // namespace tavlyn::platform
