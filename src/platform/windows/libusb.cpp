// libusb-0.1 from the driver package's DLL, bound by name when its signature has been verified.
#include <cstddef>

#include "platform/libusb_calls.h"
#include "platform/parts.h"
#include "platform/system_library.h"
#include "platform/windows/signature.h"

namespace tavlyn::platform {
namespace {

// One full path for the test and the load, so that what was tested is what is loaded.
constexpr char kFile[] = "C:\\Windows\\System32\\libusb0.dll";
constexpr wchar_t kWideFile[] = L"C:\\Windows\\System32\\libusb0.dll";

constexpr std::size_t kPathBytes = 512;
// The DLL packs its structures; these fields lie where they do either way.
static_assert(offsetof(UsbDescriptor, vendor) == 8);
static_assert(offsetof(UsbDevice<kPathBytes>, descriptor) == 3 * sizeof(void*) + kPathBytes);
static_assert(offsetof(UsbBus<kPathBytes>, devices) == 2 * sizeof(void*) + kPathBytes);

class SystemLibusb final : public LibusbCalls<kPathBytes> {
 public:
  bool Load() override {
    if (!VerifyFileSignature(kWideFile)) return false;
    // Never unloaded: a second load of the same file gives the same library.
    void* library = LoadSystemLibrary(kFile);
    if (library == nullptr) return false;
    BindAndInit(library);
    return true;
  }
};

constinit NeverDestroyed<SystemLibusb> libusbPart;

}  // namespace

Libusb& TheLibusb() { return libusbPart; }

}  // namespace tavlyn::platform
