// Why nothing could be read from a file.
#pragma once

#include <string>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Missing, not to be opened by this user, or empty.
Failure NothingIn(const std::string& path);

}  // namespace tavlyn::ctl
