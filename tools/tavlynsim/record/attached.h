// The devices of this machine, for a recording of what goes over to them.
#pragma once

#include <memory>
#include <string>

#include "sim/source.h"

namespace tavlyn::sim {

// HID devices of the built-in identities. Null, with the problem, if the system's library is missing, or on
// Windows.
std::unique_ptr<Source> AttachedDevices(std::string& problem);

}  // namespace tavlyn::sim
