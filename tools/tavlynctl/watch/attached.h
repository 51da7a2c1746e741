// What is attached now, asked of the system and not of a device: a connect would interrupt those in use.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/tavlynctl/link.h"

namespace tavlyn::ctl {

// Where a device of the product may be, named as the library names its devices: HID interfaces of known
// identities, the ports of a search that exist. Nothing behind adapters.
std::vector<std::string> AttachedPaths(const Link& link, std::uint32_t product);

// What the system knows.
std::vector<std::string> AttachedHidPaths(std::uint32_t product);

}  // namespace tavlyn::ctl
