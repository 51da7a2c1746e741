// libusb-0.1 from a file that only root can have put there.
#include <dlfcn.h>

#include <array>
#include <cstdlib>

#include "platform/linux/parts.h"
#include "platform/linux/trusted_file.h"

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
  // By the path that was tested, which is of root's alone from end to end: nobody else can lead it elsewhere
  // in between. A descriptor would give the library a name like /proc/self/fd/7, which others may bear as
  // well.
  if (!IsTrustedFile(file)) return false;
  // Never unloaded: a second load of the same file gives the same library.
  void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return false;
  BindAndInit([library](const char* name) { return dlsym(library, name); });
  return true;
}

}  // namespace tavlyn::platform
