#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tools/tavlynctl/nodes_linux.h"
#include "tools/tavlynctl/permission.h"

namespace tavlyn::ctl {
namespace {

namespace fs = std::filesystem;

struct Identity {
  unsigned vid;
  unsigned pid;
};

#define TAVLYN_PAIR(vid, pid) {0x##vid, 0x##pid},
#define TAVLYN_ROW(vid, pid, vendor, filter) {0x##vid, 0x##pid},
constexpr Identity kKnown[] = {
#include "hid/identities.inc"
};

constexpr struct {
  int vid;
  int pid;
} kBulk{0x171B, 0x1004};

bool IsKnown(unsigned vid, unsigned pid) {
  return std::ranges::any_of(kKnown, [&](const Identity& one) { return one.vid == vid && one.pid == pid; });
}

bool IsKnownNode(const fs::path& node) {
  std::ifstream lines(node / "device" / "uevent");
  for (std::string line; std::getline(lines, line);) {
    unsigned vid = 0;
    unsigned pid = 0;
    if (std::sscanf(line.c_str(), "HID_ID=%*x:%x:%x", &vid, &pid) == 2) return IsKnown(vid, pid);
  }
  return false;
}

// A sysfs attribute that is a number; -1 for none.
int Attribute(const fs::path& file, int base) {
  std::string text;
  std::getline(std::ifstream(file), text);
  return text.empty() ? -1 : static_cast<int>(std::strtol(text.c_str(), nullptr, base));
}

// "/dev/bus/usb/001/004", of the reader that libusb finds; empty for any other device.
std::string BulkNode(const fs::path& device, const std::string& nodes) {
  if (Attribute(device / "idVendor", 16) != kBulk.vid || Attribute(device / "idProduct", 16) != kBulk.pid) {
    return {};
  }
  char name[32];
  std::snprintf(name, sizeof name, "%03d/%03d", Attribute(device / "busnum", 10),
                Attribute(device / "devnum", 10));
  return (fs::path(nodes) / name).string();
}

std::string Forbidden(const std::string& nodes) {
  return "a reader is plugged in, but this user may not open " + nodes +
         "; install the udev rules in docs/linux.md, or join the node's group";
}

}  // namespace

std::string PermissionProblem() {
  const std::string problem = PermissionProblem("/sys/class/hidraw", "/dev");
  return !problem.empty() ? problem : BulkProblem("/sys/bus/usb/devices", "/dev/bus/usb");
}

std::string PermissionProblem(const std::string& hidrawClass, const std::string& nodes) {
  std::string found;
  std::error_code none;
  for (const fs::directory_entry& entry : fs::directory_iterator(hidrawClass, none)) {
    if (!IsKnownNode(entry.path())) continue;
    const std::string node = (fs::path(nodes) / entry.path().filename()).string();
    if (!IsForbidden(node)) continue;
    found += (found.empty() ? "" : ", ") + node + " (" + ModeOf(node) + ")";
  }
  return found.empty() ? found : Forbidden(found);
}

std::string BulkProblem(const std::string& usbDevices, const std::string& nodes) {
  std::error_code none;
  for (const fs::directory_entry& entry : fs::directory_iterator(usbDevices, none)) {
    const std::string node = BulkNode(entry.path(), nodes);
    if (node.empty()) continue;
    if (IsForbidden(node)) return Forbidden(node + " (" + ModeOf(node) + ")");
    const std::string holders = HoldersOf(node);
    if (!holders.empty())
      return std::string("the reader at ").append(node).append(" is held by ").append(holders);
  }
  return {};
}

}  // namespace tavlyn::ctl
