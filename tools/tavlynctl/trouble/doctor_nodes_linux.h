// The nodes of known USB devices, and the udev rules that open them.
#pragma once

#include <string>
#include <vector>

#include "tools/tavlynctl/trouble/doctor.h"

namespace tavlyn::ctl {

struct UdevPlaces {
  std::string hidrawClass = "/sys/class/hidraw";
  std::string hidNodes = "/dev";
  std::string usbDevices = "/sys/bus/usb/devices";
  std::string usbNodes = "/dev/bus/usb";
  std::string state = "/run/udev";
  std::vector<std::string> rules = {"/etc/udev/rules.d", "/run/udev/rules.d", "/usr/local/lib/udev/rules.d",
                                    "/usr/lib/udev/rules.d", "/lib/udev/rules.d"};
};

// What shows the programs that HoldersOf has named; root sees those of others.
std::string LineForHolders(const std::string& holders);

Findings NodeFindings(const UdevPlaces& places);

}  // namespace tavlyn::ctl
