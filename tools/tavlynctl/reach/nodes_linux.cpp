#include "tools/tavlynctl/reach/nodes_linux.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tools/tavlynctl/reach/known_identities.h"
#include "tools/tavlynctl/reach/reach.h"

namespace tavlyn::ctl {
namespace {

namespace fs = std::filesystem;

bool HasOpen(const fs::path& process, const std::string& target) {
  std::error_code none;
  for (const fs::directory_entry& descriptor : fs::directory_iterator(process / "fd", none)) {
    if (fs::read_symlink(descriptor.path(), none) == target) return true;
  }
  return false;
}

bool IsOtherProcess(const std::string& name) {
  return std::ranges::all_of(name, [](unsigned char c) { return std::isdigit(c) != 0; }) &&
         name != std::to_string(getpid());
}

constexpr struct {
  int vid;
  int pid;
} kBulk{0x171B, 0x1004};

bool IsKnownNode(const fs::path& node) {
  std::ifstream lines(node / "device" / "uevent");
  for (std::string line; std::getline(lines, line);) {
    unsigned vid = 0;
    unsigned pid = 0;
    if (std::sscanf(line.c_str(), "HID_ID=%*x:%x:%x", &vid, &pid) == 2) return IsKnownIdentity(vid, pid);
  }
  return false;
}

// A numeric sysfs attribute; -1 for none.
int Attribute(const fs::path& file, int base) {
  std::string text;
  std::getline(std::ifstream(file), text);
  return text.empty() ? -1 : static_cast<int>(std::strtol(text.c_str(), nullptr, base));
}

// "/dev/bus/usb/001/004", for the reader that libusb finds; empty for any other device.
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

bool IsForbidden(const std::string& node) {
  return access(node.c_str(), R_OK | W_OK) != 0 && errno == EACCES;
}

std::string ModeOf(const std::string& node) {
  struct stat status {};
  if (stat(node.c_str(), &status) != 0) return "unknown mode";
  // cppcheck-suppress getpwuidCalled ; no other thread calls it
  const passwd* owner = getpwuid(status.st_uid);
  // cppcheck-suppress getgrgidCalled ; no other thread calls it
  const group* members = getgrgid(status.st_gid);
  char mode[8];
  std::snprintf(mode, sizeof mode, "%04o", static_cast<unsigned>(status.st_mode & 07777U));
  return std::string("mode ") + mode + ", owner " +
         (owner != nullptr ? owner->pw_name : std::to_string(status.st_uid)) + ", group " +
         (members != nullptr ? members->gr_name : std::to_string(status.st_gid));
}

std::string HoldersOf(const std::string& node) {
  std::error_code none;
  const fs::path real = fs::canonical(node, none);
  return real.empty() ? std::string() : HoldersOfLink(real.string());
}

std::string HoldersOfLink(const std::string& target) {
  std::string holders;
  std::error_code none;
  for (const fs::directory_entry& process : fs::directory_iterator("/proc", none)) {
    const std::string number = process.path().filename();
    if (!IsOtherProcess(number) || !HasOpen(process.path(), target)) continue;
    std::string name;
    std::getline(std::ifstream(process.path() / "comm"), name);
    if (!holders.empty()) holders += ", ";
    holders.append(name).append(" (process ").append(number).append(")");
  }
  return holders;
}

std::string PermissionProblem() {
  const std::string problem = HidProblem("/sys/class/hidraw", "/dev");
  return !problem.empty() ? problem : BulkProblem("/sys/bus/usb/devices", "/dev/bus/usb");
}

std::vector<std::string> KnownHidNodes(const std::string& hidrawClass, const std::string& nodes) {
  std::vector<std::string> known;
  std::error_code none;
  for (const fs::directory_entry& entry : fs::directory_iterator(hidrawClass, none)) {
    if (IsKnownNode(entry.path())) known.push_back((fs::path(nodes) / entry.path().filename()).string());
  }
  return known;
}

std::vector<std::string> KnownBulkNodes(const std::string& usbDevices, const std::string& nodes) {
  std::vector<std::string> known;
  std::error_code none;
  for (const fs::directory_entry& entry : fs::directory_iterator(usbDevices, none)) {
    std::string node = BulkNode(entry.path(), nodes);
    if (!node.empty()) known.push_back(std::move(node));
  }
  return known;
}

std::string HidProblem(const std::string& hidrawClass, const std::string& nodes) {
  std::string found;
  for (const std::string& node : KnownHidNodes(hidrawClass, nodes)) {
    if (!IsForbidden(node)) continue;
    found += (found.empty() ? "" : ", ") + node + " (" + ModeOf(node) + ")";
  }
  return found.empty() ? found : Forbidden(found);
}

std::string BulkProblem(const std::string& usbDevices, const std::string& nodes) {
  for (const std::string& node : KnownBulkNodes(usbDevices, nodes)) {
    if (IsForbidden(node)) return Forbidden(node + " (" + ModeOf(node) + ")");
    const std::string holders = HoldersOf(node);
    if (!holders.empty())
      return std::string("the reader at ").append(node).append(" is held by ").append(holders);
  }
  return {};
}

}  // namespace tavlyn::ctl
