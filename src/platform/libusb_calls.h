// The calls of libusb-0.1, bound by name. The systems differ in how its file is verified and loaded, and in
// the length of the paths in its lists.
#pragma once

#include <cstddef>

#include "platform/handle_table.h"
#include "platform/platform.h"
#include "platform/system_library.h"

namespace tavlyn::platform {

// The list that usb_get_busses returns, as far as it is used.
struct UsbDescriptor {
  std::uint8_t length, type;
  std::uint16_t usb;
  std::uint8_t deviceClass, subClass, protocol, maxPacket;
  std::uint16_t vendor, product;
};
template <std::size_t PathBytes>
struct UsbBus;
template <std::size_t PathBytes>
struct UsbDevice {
  UsbDevice* next;
  UsbDevice* previous;
  char filename[PathBytes];
  UsbBus<PathBytes>* bus;
  UsbDescriptor descriptor;
};
template <std::size_t PathBytes>
struct UsbBus {
  UsbBus* next;
  UsbBus* previous;
  char dirname[PathBytes];
  UsbDevice<PathBytes>* devices;
};

template <std::size_t PathBytes>
class LibusbCalls : public Libusb {
 public:
  std::int32_t FindBusses() override { return call_.findBusses != nullptr ? call_.findBusses() : -1; }
  std::int32_t FindDevices() override { return call_.findDevices != nullptr ? call_.findDevices() : -1; }

  Handle Open(HidIds ids) override {
    if (call_.getBusses == nullptr || call_.open == nullptr) return kNoHandle;
    for (const Bus* bus = call_.getBusses(); bus != nullptr; bus = bus->next) {
      Device* device = FirstOf(*bus, ids);
      void* native = device != nullptr ? call_.open(device) : nullptr;
      if (native != nullptr) return opened_.Add(native, [this](void* one) { CloseNative(one); });
    }
    return kNoHandle;
  }

  void Close(Handle device) override {
    if (const auto native = opened_.Remove(device)) CloseNative(*native);
  }

  std::int32_t ClaimInterface(Handle device, std::int32_t number) override {
    void* native = NativeOf(device);
    const std::int32_t claimed =
        call_.claim != nullptr && native != nullptr ? call_.claim(native, number) : -1;
    if (call_.errorText != nullptr) call_.errorText();
    return claimed;
  }

  std::int32_t ReleaseInterface(Handle device, std::int32_t number) override {
    void* native = NativeOf(device);
    return call_.release != nullptr && native != nullptr ? call_.release(native, number) : -1;
  }

  std::int32_t SetConfiguration(Handle device, std::int32_t configuration) override {
    void* native = NativeOf(device);
    if (call_.setConfiguration == nullptr || native == nullptr) return -1;
    return call_.setConfiguration(native, configuration);
  }

  std::int32_t BulkRead(Handle device, std::int32_t endpoint, std::span<std::uint8_t> bytes,
                        std::int32_t timeout) override {
    void* native = NativeOf(device);
    if (call_.bulkRead == nullptr || native == nullptr) return -1;
    return call_.bulkRead(native, endpoint, reinterpret_cast<char*>(bytes.data()),
                          static_cast<int>(bytes.size()), timeout);
  }

  std::int32_t BulkWrite(Handle device, std::int32_t endpoint, std::span<const std::uint8_t> bytes,
                         std::int32_t timeout) override {
    void* native = NativeOf(device);
    if (call_.bulkWrite == nullptr || native == nullptr) return -1;
    return call_.bulkWrite(native, endpoint, reinterpret_cast<const char*>(bytes.data()),
                           static_cast<int>(bytes.size()), timeout);
  }

 protected:
  ~LibusbCalls() = default;

  // Binds the library that has just been loaded. Missing functions stay null.
  void BindAndInit(void* library) {
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
    if (call_.init != nullptr) call_.init();
  }

 private:
  using Device = UsbDevice<PathBytes>;
  using Bus = UsbBus<PathBytes>;

  struct Calls {
    void (*init)();
    int (*findBusses)();
    int (*findDevices)();
    Bus* (*getBusses)();
    void* (*open)(Device*);
    int (*close)(void*);
    int (*claim)(void*, int);
    int (*release)(void*, int);
    int (*setConfiguration)(void*, int);
    char* (*errorText)();
    int (*bulkRead)(void*, int, char*, int, int);
    int (*bulkWrite)(void*, int, const char*, int, int);
  };

  static Device* FirstOf(const Bus& bus, HidIds ids) {
    Device* device = bus.devices;
    while (device != nullptr &&
           (device->descriptor.vendor != ids.vid || device->descriptor.product != ids.pid)) {
      device = device->next;
    }
    return device;
  }

  void* NativeOf(Handle number) { return opened_.Find(number).value_or(nullptr); }

  void CloseNative(void* native) {
    if (call_.close != nullptr) call_.close(native);
  }

  // These stay bound if the file is no longer trusted later; only the refresh is then skipped.
  Calls call_{};
  HandleTable<void*> opened_;
};

}  // namespace tavlyn::platform
