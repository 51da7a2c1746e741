// libusb-0.1 from a file that only root can have put there.
#include <dlfcn.h>
#include <limits.h>
#include <sys/stat.h>

#include <array>
#include <cstdlib>
#include <string>

#include "platform/linux/parts.h"

namespace tavlyn::platform {
namespace {

// The list that usb_get_busses gives, as far as it is looked at.
struct UsbDescriptor {
  std::uint8_t length, type;
  std::uint16_t usb;
  std::uint8_t deviceClass, subClass, protocol, maxPacket;
  std::uint16_t vendor, product;
};
struct UsbDevice {
  UsbDevice* next;
  UsbDevice* previous;
  char filename[PATH_MAX + 1];
  struct UsbBus* bus;
  UsbDescriptor descriptor;
};
struct UsbBus {
  UsbBus* next;
  UsbBus* previous;
  char dirname[PATH_MAX + 1];
  UsbDevice* devices;
};

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

// They stay bound when the file is no longer trusted later; nothing but the refresh is then skipped.
constinit Functions call{};

// usb handles by numbers of our own: there is one device, so a few are enough.
constexpr std::size_t kHandles = 8;
struct OpenDevice {
  Handle number;
  void* native;
};
constinit std::array<OpenDevice, kHandles> opened{};
constinit Handle lastNumber = 0;

OpenDevice* Find(Handle number) {
  for (OpenDevice& one : opened) {
    if (one.native != nullptr && one.number == number) return &one;
  }
  return nullptr;
}

void* NativeOf(Handle number) {
  const OpenDevice* one = Find(number);
  return one != nullptr ? one->native : nullptr;
}

constexpr std::array kFolders = {"/usr/lib/x86_64-linux-gnu",
                                 "/lib/x86_64-linux-gnu",
                                 "/usr/lib/aarch64-linux-gnu",
                                 "/lib/aarch64-linux-gnu",
                                 "/usr/lib64",
                                 "/lib64",
                                 "/usr/lib",
                                 "/lib"};

std::string RealPath(const std::string& path) {
  char real[PATH_MAX];
  return realpath(path.c_str(), real) != nullptr ? std::string(real) : std::string();
}

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

template <typename Function>
void Bind(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
}

}  // namespace

bool LinuxLibusb::Load() {
  const std::string file = LibraryFile();
  if (!IsTrusted(file)) return false;
  // Never unloaded: a second load of the same file gives the same library.
  void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return false;
  Bind(library, "usb_open", call.open);
  Bind(library, "usb_close", call.close);
  Bind(library, "usb_bulk_write", call.bulkWrite);
  Bind(library, "usb_bulk_read", call.bulkRead);
  Bind(library, "usb_claim_interface", call.claim);
  Bind(library, "usb_release_interface", call.release);
  Bind(library, "usb_init", call.init);
  Bind(library, "usb_find_busses", call.findBusses);
  Bind(library, "usb_find_devices", call.findDevices);
  Bind(library, "usb_get_busses", call.getBusses);
  Bind(library, "usb_set_configuration", call.setConfiguration);
  Bind(library, "usb_strerror", call.errorText);
  if (call.init != nullptr) call.init();
  return true;
}

std::int32_t LinuxLibusb::FindBusses() { return call.findBusses != nullptr ? call.findBusses() : -1; }
std::int32_t LinuxLibusb::FindDevices() { return call.findDevices != nullptr ? call.findDevices() : -1; }

Handle LinuxLibusb::Open(HidIds ids) {
  if (call.getBusses == nullptr || call.open == nullptr) return kNoHandle;
  OpenDevice* free = nullptr;
  for (OpenDevice& one : opened) {
    if (one.native == nullptr) free = &one;
  }
  for (const UsbBus* bus = call.getBusses(); bus != nullptr && free != nullptr; bus = bus->next) {
    UsbDevice* device = bus->devices;
    while (device != nullptr &&
           (device->descriptor.vendor != ids.vid || device->descriptor.product != ids.pid)) {
      device = device->next;
    }
    void* native = device != nullptr ? call.open(device) : nullptr;
    if (native == nullptr) continue;
    *free = {++lastNumber, native};
    return lastNumber;
  }
  return kNoHandle;
}

void LinuxLibusb::Close(Handle device) {
  OpenDevice* one = Find(device);
  if (one == nullptr) return;
  if (call.close != nullptr) call.close(one->native);
  one->native = nullptr;
}

std::int32_t LinuxLibusb::ClaimInterface(Handle device, std::int32_t number) {
  void* native = NativeOf(device);
  const std::int32_t claimed = call.claim != nullptr && native != nullptr ? call.claim(native, number) : -1;
  if (call.errorText != nullptr) call.errorText();
  return claimed;
}

std::int32_t LinuxLibusb::ReleaseInterface(Handle device, std::int32_t number) {
  void* native = NativeOf(device);
  return call.release != nullptr && native != nullptr ? call.release(native, number) : -1;
}

std::int32_t LinuxLibusb::SetConfiguration(Handle device, std::int32_t configuration) {
  void* native = NativeOf(device);
  return call.setConfiguration != nullptr && native != nullptr ? call.setConfiguration(native, configuration)
                                                               : -1;
}

std::int32_t LinuxLibusb::BulkRead(Handle device, std::int32_t endpoint, std::span<std::uint8_t> bytes,
                                   std::int32_t timeout) {
  void* native = NativeOf(device);
  if (call.bulkRead == nullptr || native == nullptr) return -1;
  return call.bulkRead(native, endpoint, reinterpret_cast<char*>(bytes.data()),
                       static_cast<int>(bytes.size()), timeout);
}

std::int32_t LinuxLibusb::BulkWrite(Handle device, std::int32_t endpoint, std::span<const std::uint8_t> bytes,
                                    std::int32_t timeout) {
  void* native = NativeOf(device);
  if (call.bulkWrite == nullptr || native == nullptr) return -1;
  return call.bulkWrite(native, endpoint, reinterpret_cast<const char*>(bytes.data()),
                        static_cast<int>(bytes.size()), timeout);
}

}  // namespace tavlyn::platform
