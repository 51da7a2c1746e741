// libusb-0.1 from a file that only root can have put there.
#include <climits>

#include "platform/libusb_calls.h"
#include "platform/linux/libusb_file.h"
#include "platform/linux/trusted_file.h"
#include "platform/parts.h"
#include "platform/system_library.h"

namespace tavlyn::platform {
namespace {

class SystemLibusb final : public LibusbCalls<PATH_MAX + 1> {
 public:
  bool Load() override {
    const Path file = LibusbFile();
    // Loaded by the path that was tested, no part of which anyone but root can change in between. Through a
    // descriptor the library would get a name like /proc/self/fd/7, which another library may have as well.
    if (!IsTrustedFile(file)) return false;
    // Never unloaded: loading the same file again returns the same library.
    void* library = LoadSystemLibrary(file.c_str());
    if (library == nullptr) return false;
    BindAndInit(library);
    return true;
  }
};

constinit NeverDestroyed<SystemLibusb> libusbPart;

}  // namespace

Libusb& TheLibusb() { return libusbPart; }

}  // namespace tavlyn::platform
