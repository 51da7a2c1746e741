// libusb-0.1 from a file that only root can have put there.
#include <dlfcn.h>
#include <sys/stat.h>

#include <array>
#include <cstdlib>
#include <string>

#include "platform/linux/parts.h"

namespace tavlyn::platform {
namespace {

constexpr std::array kFolders = {"/usr/lib/x86_64-linux-gnu",
                                 "/lib/x86_64-linux-gnu",
                                 "/usr/lib/aarch64-linux-gnu",
                                 "/lib/aarch64-linux-gnu",
                                 "/usr/lib64",
                                 "/lib64",
                                 "/usr/lib",
                                 "/lib"};

bool OnlyRootWrites(const struct stat& status) {
  return status.st_uid == 0 && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// A regular file of root's in a folder of root's, neither writable by others.
bool IsTrusted(const std::string& file) {
  struct stat status {};
  if (file.empty() || stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode) || !OnlyRootWrites(status))
    return false;
  return stat(file.substr(0, file.rfind('/') + 1).c_str(), &status) == 0 && OnlyRootWrites(status);
}

std::string LibraryFile() {
  if (const char* chosen = secure_getenv("TAVLYNAPI_LIBUSB"); chosen != nullptr) return RealPath(chosen);
  for (const char* folder : kFolders) {
    std::string file = RealPath(std::string(folder) + "/libusb-0.1.so.4");
    if (!file.empty()) return file;
  }
  return {};
}

}  // namespace

bool LinuxLibusb::Load() {
  const std::string file = LibraryFile();
  if (!IsTrusted(file)) return false;
  // Never unloaded: a second load of the same file gives the same library.
  void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return false;
  BindAndInit([library](const char* name) { return dlsym(library, name); });
  return true;
}

}  // namespace tavlyn::platform
