#include "tools/tavlynctl/permission.h"

namespace tavlyn::ctl {

// On Windows every user may open these devices.
std::string PermissionProblem() { return {}; }

}  // namespace tavlyn::ctl
