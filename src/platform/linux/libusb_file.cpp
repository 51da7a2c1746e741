#include "platform/linux/libusb_file.h"

#include <array>
#include <cstdlib>

#include "platform/linux/trusted_file.h"

namespace tavlyn::platform {
namespace {

// Debian has a folder for each processor, of which others' libraries could not be loaded.
constexpr std::array kFolders = {
    "/usr/lib/" TAVLYN_MULTIARCH, "/lib/" TAVLYN_MULTIARCH, "/usr/lib64", "/lib64", "/usr/lib", "/lib"};

}  // namespace

Path LibusbFile() {
  if (const char* chosen = secure_getenv("TAVLYNAPI_LIBUSB"); chosen != nullptr)
    return RealPath(Path("%s", chosen));
  for (const char* folder : kFolders) {
    const Path file = RealPath(Path("%s/libusb-0.1.so.4", folder));
    if (!file.IsEmpty()) return file;
  }
  return {};
}

}  // namespace tavlyn::platform
