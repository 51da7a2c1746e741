// libusb-0.1 from the driver package's DLL, bound by name when its signature has been verified.
#include <cstddef>

#include "platform/handle_table.h"
#include "platform/windows/backend.h"
#include "platform/windows/signature.h"
#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

// One full path for the test and the load, so that what was tested is what is loaded.
constexpr char kFile[] = "C:\\Windows\\System32\\libusb0.dll";
constexpr wchar_t kWideFile[] = L"C:\\Windows\\System32\\libusb0.dll";

// The list that usb_get_busses gives, as far as it is looked at.
struct UsbDescriptor {
  std::uint8_t length, type;
  std::uint16_t usb;
  std::uint8_t deviceClass, subClass, protocol, maxPacket;
  std::uint16_t vendor, product;
};
struct UsbBus;
struct UsbDevice {
  UsbDevice* next;
  UsbDevice* previous;
  char filename[512];
  UsbBus* bus;
  UsbDescriptor descriptor;
};
struct UsbBus {
  UsbBus* next;
  UsbBus* previous;
  char dirname[512];
  UsbDevice* devices;
};
// The DLL packs its structures; these fields lie where they do either way.
static_assert(offsetof(UsbDescriptor, vendor) == 8);
static_assert(offsetof(UsbDevice, descriptor) == 3 * sizeof(void*) + 512);
static_assert(offsetof(UsbBus, devices) == 2 * sizeof(void*) + 512);

struct Functions {
  void (*init)();
  int (*findBusses)();
  int (*findDevices)();
  UsbBus* (*getBusses)();
  void* (*open)(UsbDevice*);
  int (*close)(void*);
  int (*claim)(void*, int);
  int (*release)(void*, int);
  int (*setConfiguration)(void*, int);
  char* (*errorText)();
  int (*bulkRead)(void*, int, char*, int, int);
  int (*bulkWrite)(void*, int, const char*, int, int);
};

template <typename Function>
void Bind(HMODULE library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

class SystemLibusb final : public Libusb {
 public:
  bool Load() override {
    if (!VerifyFileSignature(kWideFile)) return false;
    // Never unloaded: a second load gives the same library. What it needs itself comes from the same folder.
    HMODULE library = LoadLibraryExA(kFile, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (library == nullptr) return false;
    BindAll(library);
    if (call_.init != nullptr) call_.init();
    return true;
  }

  std::int32_t FindBusses() override { return call_.findBusses != nullptr ? call_.findBusses() : -1; }
  std::int32_t FindDevices() override { return call_.findDevices != nullptr ? call_.findDevices() : -1; }

  Handle Open(HidIds ids) override {
    if (call_.getBusses == nullptr || call_.open == nullptr) return kNoHandle;
    for (const UsbBus* bus = call_.getBusses(); bus != nullptr; bus = bus->next) {
      UsbDevice* device = FirstOf(*bus, ids);
      void* native = device != nullptr ? call_.open(device) : nullptr;
      if (native != nullptr) return devices_.Add(native);
    }
    return kNoHandle;
  }

  void Close(Handle device) override {
    const auto native = devices_.Remove(device);
    if (native && call_.close != nullptr) call_.close(*native);
  }

  std::int32_t ClaimInterface(Handle device, std::int32_t number) override {
    void* native = Native(device);
    const std::int32_t claimed =
        call_.claim != nullptr && native != nullptr ? call_.claim(native, number) : -1;
    if (call_.errorText != nullptr) call_.errorText();
    return claimed;
  }

  std::int32_t ReleaseInterface(Handle device, std::int32_t number) override {
    void* native = Native(device);
    return call_.release != nullptr && native != nullptr ? call_.release(native, number) : -1;
  }

  std::int32_t SetConfiguration(Handle device, std::int32_t configuration) override {
    void* native = Native(device);
    if (call_.setConfiguration == nullptr || native == nullptr) return -1;
    return call_.setConfiguration(native, configuration);
  }

  std::int32_t BulkRead(Handle device, std::int32_t endpoint, std::span<std::uint8_t> bytes,
                        std::int32_t timeout) override {
    void* native = Native(device);
    if (call_.bulkRead == nullptr || native == nullptr) return -1;
    return call_.bulkRead(native, endpoint, reinterpret_cast<char*>(bytes.data()),
                          static_cast<int>(bytes.size()), timeout);
  }

  std::int32_t BulkWrite(Handle device, std::int32_t endpoint, std::span<const std::uint8_t> bytes,
                         std::int32_t timeout) override {
    void* native = Native(device);
    if (call_.bulkWrite == nullptr || native == nullptr) return -1;
    return call_.bulkWrite(native, endpoint, reinterpret_cast<const char*>(bytes.data()),
                           static_cast<int>(bytes.size()), timeout);
  }

 private:
  void* Native(Handle device) { return devices_.Find(device).value_or(nullptr); }

  static UsbDevice* FirstOf(const UsbBus& bus, HidIds ids) {
    UsbDevice* device = bus.devices;
    while (device != nullptr &&
           (device->descriptor.vendor != ids.vid || device->descriptor.product != ids.pid)) {
      device = device->next;
    }
    return device;
  }

  void BindAll(HMODULE library) {
    Bind(library, "usb_open", call_.open);
    Bind(library, "usb_close", call_.close);
    Bind(library, "usb_bulk_write", call_.bulkWrite);
    Bind(library, "usb_bulk_read", call_.bulkRead);
    Bind(library, "usb_claim_interface", call_.claim);
    Bind(library, "usb_release_interface", call_.release);
    Bind(library, "usb_init", call_.init);
    Bind(library, "usb_find_busses", call_.findBusses);
    Bind(library, "usb_find_devices", call_.findDevices);
    Bind(library, "usb_get_busses", call_.getBusses);
    Bind(library, "usb_set_configuration", call_.setConfiguration);
    Bind(library, "usb_strerror", call_.errorText);
  }

  // They stay bound when the file is no longer trusted later; nothing but the refresh is then skipped.
  Functions call_{};
  HandleTable<void*> devices_;
};

}  // namespace

Libusb& WindowsLibusb() {
  static SystemLibusb usb;
  return usb;
}

}  // namespace tavlyn::platform
