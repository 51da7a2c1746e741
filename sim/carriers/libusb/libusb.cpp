// A stand-in for libusb-0.1 that shows simulated readers as bulk devices: the @bulk devices of the tavlynsim
// process that TAVLYNSIM_SOCKET names, else those of a rack of its own (sim/carriers/standin_control.h).
// Names, structures and results are those of libusb-0.1.
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <deque>
#include <span>
#include <thread>
#include <vector>

#include "sim/carriers/standin_control.h"
#include "sim/carriers/standin_source.h"

using tavlyn::sim::Key;
using tavlyn::sim::LineKind;
using tavlyn::sim::ListedLine;
using tavlyn::sim::Outcome;
using tavlyn::sim::StandinSource;

extern "C" {

struct usb_device_descriptor {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint16_t bcdUSB;
  std::uint8_t bDeviceClass;
  std::uint8_t bDeviceSubClass;
  std::uint8_t bDeviceProtocol;
  std::uint8_t bMaxPacketSize0;
  std::uint16_t idVendor;
  std::uint16_t idProduct;
  std::uint16_t bcdDevice;
  std::uint8_t iManufacturer;
  std::uint8_t iProduct;
  std::uint8_t iSerialNumber;
  std::uint8_t bNumConfigurations;
};

struct usb_bus;

struct usb_device {
  usb_device* next;
  usb_device* prev;
  char filename[PATH_MAX + 1];
  usb_bus* bus;
  usb_device_descriptor descriptor;
  void* config;  // configuration descriptors: none are given
  void* dev;
  std::uint8_t devnum;
  unsigned char num_children;
  usb_device** children;
};

struct usb_bus {
  usb_bus* next;
  usb_bus* prev;
  char dirname[PATH_MAX + 1];
  usb_device* devices;
  std::uint32_t location;
  usb_device* root_dev;
};

struct usb_dev_handle {
  Key line;
  bool claimed;
  bool gone;
};

}  // extern "C"

namespace {

constexpr std::uint16_t kVendor = 0x171B;
constexpr std::uint16_t kProduct = 0x1004;
constexpr int kEndpointIn = 0x83;
constexpr int kEndpointOut = 0x03;
constexpr std::chrono::milliseconds kPollPause(1);

struct Node {
  usb_device device{};
  Key line = 0;
};

usb_bus theBus{};
// Their addresses stay valid: programs keep them from one search to the next.
std::deque<Node> nodes;

std::vector<ListedLine> BulkLines() {
  std::vector<ListedLine> lines = StandinSource().Lines();
  std::erase_if(lines, [](const ListedLine& line) { return line.place.kind != LineKind::kBulk; });
  return lines;
}

Node& NodeOf(Key line) {
  const auto found = std::ranges::find(nodes, line, &Node::line);
  if (found != nodes.end()) return *found;
  Node& node = nodes.emplace_back();
  node.line = line;
  usb_device& device = node.device;
  device.bus = &theBus;
  device.devnum = static_cast<std::uint8_t>(nodes.size());
  std::snprintf(device.filename, sizeof device.filename, "%03u", static_cast<unsigned>(device.devnum));
  device.descriptor = {18, 1, 0x0110, 0xFF, 0, 0, 8, kVendor, kProduct, 0x0100, 0, 0, 0, 1};
  return node;
}

// The device is gone: open handles on it fail from now on.
int Gone(usb_dev_handle* handle) {
  handle->gone = true;
  return -ENODEV;
}

}  // namespace

extern "C" {

void usb_init() { std::snprintf(theBus.dirname, sizeof theBus.dirname, "001"); }
void usb_set_debug(int) {}
int usb_find_busses() { return 0; }

// The number of changes since the last search.
int usb_find_devices() {
  std::vector<usb_device*> before;
  for (usb_device* device = theBus.devices; device != nullptr; device = device->next)
    before.push_back(device);
  std::vector<usb_device*> now;
  for (const ListedLine& line : BulkLines()) now.push_back(&NodeOf(line.key).device);
  theBus.devices = now.empty() ? nullptr : now.front();
  for (std::size_t i = 0; i < now.size(); ++i) {
    now[i]->prev = i > 0 ? now[i - 1] : nullptr;
    now[i]->next = i + 1 < now.size() ? now[i + 1] : nullptr;
  }
  const auto missingIn = [](const std::vector<usb_device*>& all) {
    return [&all](usb_device* device) { return std::ranges::find(all, device) == all.end(); };
  };
  return static_cast<int>(std::ranges::count_if(now, missingIn(before)) +
                          std::ranges::count_if(before, missingIn(now)));
}

usb_bus* usb_get_busses() { return &theBus; }

usb_dev_handle* usb_open(usb_device* device) {
  const auto node = std::ranges::find(nodes, device, [](Node& one) { return &one.device; });
  const std::vector<ListedLine> lines = BulkLines();
  const bool there =
      node != nodes.end() && std::ranges::find(lines, node->line, &ListedLine::key) != lines.end();
  return there ? new usb_dev_handle{node->line, false, false} : nullptr;
}

int usb_close(usb_dev_handle* handle) {
  delete handle;
  return 0;
}

int usb_claim_interface(usb_dev_handle* handle, int number) {
  if (number != 0) return -EINVAL;
  handle->claimed = true;
  return 0;
}

int usb_release_interface(usb_dev_handle* handle, int number) {
  if (number != 0 || !handle->claimed) return -EINVAL;
  handle->claimed = false;
  return 0;
}

int usb_set_configuration(usb_dev_handle*, int configuration) { return configuration == 1 ? 0 : -EINVAL; }

const char* usb_strerror() { return "no text"; }

int usb_bulk_write(usb_dev_handle* handle, int endpoint, const char* bytes, int size, int) {
  if (endpoint != kEndpointOut || !handle->claimed || size < 0) return -EINVAL;
  if (handle->gone) return -ENODEV;
  const std::span<const std::uint8_t> out(reinterpret_cast<const std::uint8_t*>(bytes),
                                          static_cast<std::size_t>(size));
  return StandinSource().SendBytes(handle->line, out) == Outcome::kDone ? size : Gone(handle);
}

// One transfer: what the device sent as one piece, cut to the buffer's size.
int usb_bulk_read(usb_dev_handle* handle, int endpoint, char* bytes, int size, int timeout) {
  if (endpoint != kEndpointIn || !handle->claimed || size < 0) return -EINVAL;
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout);
  while (!handle->gone) {
    std::vector<std::uint8_t> piece(static_cast<std::size_t>(size));
    const Outcome outcome = StandinSource().TakeBytes(handle->line, piece);
    if (outcome == Outcome::kDone) {
      std::ranges::copy(piece, bytes);
      return static_cast<int>(piece.size());
    }
    if (outcome == Outcome::kGone || StandinSource().TakeCut(handle->line) == Outcome::kDone)
      return Gone(handle);
    if (std::chrono::steady_clock::now() >= end) {
      // The rest of what the device is waiting for will not come.
      StandinSource().Silence(handle->line);
      return -ETIMEDOUT;
    }
    std::this_thread::sleep_for(kPollPause);
  }
  return -ENODEV;
}

int tavlyn_standin(const char* command, char* reply, std::size_t size) {
  return tavlyn::sim::RunStandin(command, reply, size);
}

const char* tavlyn_standin_marker() { return "libusb-0.1.so.4"; }

}  // extern "C"
