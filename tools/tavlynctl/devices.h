// What a device is.
#pragma once

#include <string>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Of the active device, as list shows it. wasRead: its configuration was; otherwise the library reports
// zeros, and for a reader one configuration unless it was found to be a plus reader.
Json DeviceDescription(bool wasRead = true);
// The version of its firmware, empty if it does not say.
std::string FirmwareVersion();

}  // namespace tavlyn::ctl
