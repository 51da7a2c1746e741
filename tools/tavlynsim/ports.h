// Serial ports that programs of this machine open.
#pragma once

#include <memory>
#include <string>

#include "sim/carriers/served.h"

namespace tavlyn::sim {

// Port COM number, its name in the folder. Null: problem tells why.
std::unique_ptr<Served> MakePort(ByteDevice& device, const std::string& folder, unsigned number,
                                 std::string& problem);

}  // namespace tavlyn::sim
