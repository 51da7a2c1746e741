#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tools/tavlynctl/permission.h"

namespace tavlyn::ctl {
namespace {

namespace fs = std::filesystem;

struct Identity {
  unsigned vid;
  unsigned pid;
};

#define TAVLYN_PAIR(name, vid, pid) {0x##vid, 0x##pid},
#define TAVLYN_ROW(vid, pid, vendor, filter) {0x##vid, 0x##pid},
constexpr Identity kKnown[] = {
#include "hid/identities.inc"
};

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

std::string ModeOf(const std::string& node) {
  struct stat status {};
  if (stat(node.c_str(), &status) != 0) return "unknown mode";
  const passwd* owner = getpwuid(status.st_uid);
  const group* members = getgrgid(status.st_gid);
  char mode[8];
  std::snprintf(mode, sizeof mode, "%04o", static_cast<unsigned>(status.st_mode & 07777U));
  return std::string("mode ") + mode + ", owner " +
         (owner != nullptr ? owner->pw_name : std::to_string(status.st_uid)) + ", group " +
         (members != nullptr ? members->gr_name : std::to_string(status.st_gid));
}

}  // namespace

std::string PermissionProblem() { return PermissionProblem("/sys/class/hidraw", "/dev"); }

std::string PermissionProblem(const std::string& hidrawClass, const std::string& nodes) {
  std::string found;
  std::error_code none;
  for (const fs::directory_entry& entry : fs::directory_iterator(hidrawClass, none)) {
    if (!IsKnownNode(entry.path())) continue;
    const std::string node = (fs::path(nodes) / entry.path().filename()).string();
    if (access(node.c_str(), R_OK | W_OK) == 0 || errno != EACCES) continue;
    found += (found.empty() ? "" : ", ") + node + " (" + ModeOf(node) + ")";
  }
  if (found.empty()) return found;
  return "a reader is plugged in, but this user may not open " + found +
         "; the udev rules in docs/linux.md give the right to, or else membership in the node's group";
}

}  // namespace tavlyn::ctl
