// Where the COM numbers lie on this system.
#pragma once

#include <cstdint>
#include <string>

namespace tavlyn::platform {

std::string ComPath(std::uint16_t number);

}  // namespace tavlyn::platform
