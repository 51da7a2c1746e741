// Why no device was found although one is plugged in.
#pragma once

#include <string>

namespace tavlyn::ctl {

// Which known devices the user may not open, and what helps; empty when there is none.
std::string PermissionProblem();

// The same for any two folders; on Linux alone.
std::string PermissionProblem(const std::string& hidrawClass, const std::string& nodes);

}  // namespace tavlyn::ctl
