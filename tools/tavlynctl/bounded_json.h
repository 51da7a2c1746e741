// Objects that others have written.
#pragma once

#include <string_view>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// An object that is nested no deeper than anything that is said here; null for any other text.
Json ParseObject(std::string_view text);

}  // namespace tavlyn::ctl
