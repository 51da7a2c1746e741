// Why no device was found although one is plugged in.
#pragma once

#include <string>

namespace tavlyn::ctl {

// Which known devices the user may not open, or which one another program holds, and what helps; empty when
// there is none.
std::string PermissionProblem();

// The same for any two folders, of HID devices and of the bulk device; on Linux alone.
std::string PermissionProblem(const std::string& hidrawClass, const std::string& nodes);
std::string BulkProblem(const std::string& usbDevices, const std::string& nodes);

}  // namespace tavlyn::ctl
