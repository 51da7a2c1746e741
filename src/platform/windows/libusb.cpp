// libusb-0.1 from the driver package's DLL, bound by name once its signature has been verified.
#include <cstddef>

#include "platform/libusb_calls.h"
#include "platform/parts.h"
#include "platform/system_library.h"
#include "platform/windows/signature.h"

namespace tavlyn::platform {
namespace {

// The full path serves both test and load, so that what was tested is what is loaded.
constexpr char kFile[] = "C:\\Windows\\System32\\libusb0.dll";
constexpr wchar_t kWideFile[] = L"C:\\Windows\\System32\\libusb0.dll";

constexpr std::size_t kPathBytes = 512;
// The DLL packs its structures; these fields have the same offsets either way.
static_assert(offsetof(UsbDescriptor, vendor) == 8);
static_assert(offsetof(UsbDevice<kPathBytes>, descriptor) == 3 * sizeof(void*) + kPathBytes);
static_assert(offsetof(UsbBus<kPathBytes>, devices) == 2 * sizeof(void*) + kPathBytes);

class SystemLibusb final : public LibusbCalls<kPathBytes> {
 public:
  bool Load() override {
    if (!VerifyFileSignature(kWideFile)) return false;
    // Never unloaded: loading the same file again returns the same library.
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
