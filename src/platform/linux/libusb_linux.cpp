// libusb-0.1 from a file that only root can have put there.
#include <dlfcn.h>
#include <sys/stat.h>

#include <array>
#include <cstdlib>

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
bool IsTrusted(const Path& file) {
  struct stat status {};
  if (file.IsEmpty() || stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode) ||
      !OnlyRootWrites(status))
    return false;
  Path folder = file;
  folder.Cut(folder.View().rfind('/') + 1);
  return stat(folder.c_str(), &status) == 0 && OnlyRootWrites(status);
}

Path LibraryFile() {
  if (const char* chosen = secure_getenv("TAVLYNAPI_LIBUSB"); chosen != nullptr)
    return RealPath(Path("%s", chosen));
  for (const char* folder : kFolders) {
    const Path file = RealPath(Path("%s/libusb-0.1.so.4", folder));
    if (!file.IsEmpty()) return file;
  }
  return {};
}

}  // namespace

bool LinuxLibusb::Load() {
  const Path file = LibraryFile();
  if (!IsTrusted(file)) return false;
  // Never unloaded: a second load of the same file gives the same library.
  void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return false;
  BindAndInit([library](const char* name) { return dlsym(library, name); });
  return true;
}

}  // namespace tavlyn::platform
