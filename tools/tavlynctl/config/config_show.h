// The whole configuration of a device.
#pragma once

#include <optional>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Adds that of the active device as the library's mirror has it: every record and field of a reader's
// configurations, or of only one, or every setting of another product.
void DescribeConfiguration(Json& document, std::optional<int> only = {});

}  // namespace tavlyn::ctl
