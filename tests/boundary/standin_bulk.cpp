// Stands in for libusb-0.1: three devices on two buses, one of which opens and returns what was written to
// it. Its structures are laid out as in that library's header on this system.
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

namespace {

#pragma pack(push, 1)
struct Descriptor {
  std::uint8_t bLength, bDescriptorType;
  std::uint16_t bcdUSB;
  std::uint8_t bDeviceClass, bDeviceSubClass, bDeviceProtocol, bMaxPacketSize0;
  std::uint16_t idVendor, idProduct, bcdDevice;
  std::uint8_t iManufacturer, iProduct, iSerialNumber, bNumConfigurations;
};
struct Bus;
struct Device {
  Device *next, *prev;
  char filename[TAVLYN_PATH_ROOM];
  Bus* bus;
  Descriptor descriptor;
  void* config;
  void* dev;
  unsigned char devnum;
  unsigned char num_children;
  Device** children;
};
struct Bus {
  Bus *next, *prev;
  char dirname[TAVLYN_PATH_ROOM];
  Device* devices;
  unsigned long location;
  Device* root_dev;
};
#pragma pack(pop)

// Each is aligned for a pointer, as that library's allocations are.
struct Devices {
  alignas(void*) Bus first{};
  alignas(void*) Bus second{};
  alignas(void*) Device other{};
  alignas(void*) Device shy{};
  alignas(void*) Device open{};
};
Devices all;
std::string calls;
std::string pipe;

void Identify(Device& device, Bus& bus, std::uint16_t vendor, std::uint16_t product) {
  device.bus = &bus;
  device.descriptor.bLength = sizeof(Descriptor);
  device.descriptor.idVendor = vendor;
  device.descriptor.idProduct = product;
}

int Note(const std::string& call) {
  calls += call + ";";
  return 0;
}

bool IsOpen(void* handle) { return handle == &all.open; }

}  // namespace

extern "C" {

const char* standin_calls() { return calls.c_str(); }

void usb_init() { Note("init"); }

int usb_find_busses() { return 2; }

int usb_find_devices() {
  all = {};
  Identify(all.other, all.first, 0x171B, 0x1003);
  Identify(all.shy, all.first, 0x171B, 0x1004);
  Identify(all.open, all.second, 0x171B, 0x1004);
  all.first.devices = &all.other;
  all.other.next = &all.shy;
  all.first.next = &all.second;
  all.second.devices = &all.open;
  return 3;
}

Bus* usb_get_busses() { return &all.first; }

// The first device of the identity is busy elsewhere.
void* usb_open(Device* device) {
  Note(device == &all.open ? "open" : "busy");
  return device == &all.open ? device : nullptr;
}

int usb_close(void* handle) { return IsOpen(handle) ? Note("close") : -1; }

int usb_claim_interface(void* handle, int number) {
  return IsOpen(handle) ? Note("claim " + std::to_string(number)) : -1;
}

int usb_release_interface(void* handle, int number) {
  return IsOpen(handle) ? Note("release " + std::to_string(number)) : -1;
}

int usb_set_configuration(void* handle, int number) {
  return IsOpen(handle) ? Note("configuration " + std::to_string(number)) : -1;
}

const char* usb_strerror() {
  Note("strerror");
  return "no text";
}

int usb_bulk_write(void* handle, int endpoint, const char* bytes, int size, int timeout) {
  if (!IsOpen(handle)) return -1;
  Note("write " + std::to_string(endpoint) + " " + std::to_string(timeout));
  pipe.append(bytes, static_cast<std::size_t>(size));
  return size;
}

int usb_bulk_read(void* handle, int endpoint, char* bytes, int size, int timeout) {
  if (!IsOpen(handle)) return -1;
  Note("read " + std::to_string(endpoint) + " " + std::to_string(timeout));
  const std::size_t count = pipe.copy(bytes, static_cast<std::size_t>(size));
  pipe.erase(0, count);
  return static_cast<int>(count);
}

}  // extern "C"
