// libusb-0.1 from the driver package's DLL, bound by name when its signature has been verified.
#include <cstddef>

#include "platform/libusb_calls.h"
#include "platform/windows/backend.h"
#include "platform/windows/signature.h"
#include "platform/windows/system.h"

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
    // Never unloaded: a second load gives the same library. What it needs itself comes from the same folder.
    HMODULE library = LoadLibraryExA(kFile, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library == nullptr) return false;
    BindAndInit(
        [library](const char* name) { return reinterpret_cast<void*>(GetProcAddress(library, name)); });
    return true;
  }
};

}  // namespace

Libusb& WindowsLibusb() {
  static SystemLibusb usb;
  return usb;
}

}  // namespace tavlyn::platform
