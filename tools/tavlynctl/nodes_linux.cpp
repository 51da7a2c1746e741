#include "tools/tavlynctl/nodes_linux.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>

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

}  // namespace

bool IsForbidden(const std::string& node) {
  return access(node.c_str(), R_OK | W_OK) != 0 && errno == EACCES;
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

}  // namespace tavlyn::ctl
