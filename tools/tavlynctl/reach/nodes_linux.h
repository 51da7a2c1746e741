// Device files: who may open them, who has them open, and which of them hide a reader.
#pragma once

#include <string>
#include <vector>

namespace tavlyn::ctl {

// True if it exists and this user may not open it.
bool IsForbidden(const std::string& node);
// "mode 0660, owner root, group dialout".
std::string ModeOf(const std::string& node);
// "minicom (process 123)": the other programs that have it open, as far as this user can see.
std::string HoldersOf(const std::string& node);
// The same for what a descriptor's link names, such as "socket:[123]".
std::string HoldersOfLink(const std::string& target);

// The nodes of devices that the library knows: those that hidapi opens, and the bulk device.
std::vector<std::string> KnownHidNodes(const std::string& hidrawClass, const std::string& nodes);
std::vector<std::string> KnownBulkNodes(const std::string& usbDevices, const std::string& nodes);

// PermissionProblem for any two folders, of HID devices and of the bulk device.
std::string HidProblem(const std::string& hidrawClass, const std::string& nodes);
std::string BulkProblem(const std::string& usbDevices, const std::string& nodes);

}  // namespace tavlyn::ctl
