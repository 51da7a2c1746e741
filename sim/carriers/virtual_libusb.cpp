#include "sim/carriers/virtual_libusb.h"

#include <algorithm>
#include <utility>

namespace tavlyn::sim {

void VirtualLibusb::Reset() {
  loads = present = false;
  busses = 1;
  claimResult = 0;
  toRead.clear();
  device = nullptr;
  loadsAsked = openHandles = 0;
  transfers.clear();
  writeResult.reset();
}

void VirtualLibusb::Note(std::string text) {
  if (!loads) return;
  Event event{EventKind::kUsb};
  event.text = std::move(text);
  transcript_.Add(std::move(event));
}

bool VirtualLibusb::Load() {
  ++loadsAsked;
  Note("load");
  return loads;
}

std::int32_t VirtualLibusb::FindBusses() {
  Note("busses");
  return loads ? busses : -1;
}

std::int32_t VirtualLibusb::FindDevices() {
  Note("devices");
  return loads ? 1 : -1;
}

platform::Handle VirtualLibusb::Open(platform::HidIds ids) {
  Note("open");
  if (!loads || !present || ids.vid != 0x171B || ids.pid != 0x1004) return platform::kNoHandle;
  ++openHandles;
  return ++last_;
}

void VirtualLibusb::Close(platform::Handle /*device*/) {
  Note("close");
  --openHandles;
}

std::int32_t VirtualLibusb::ClaimInterface(platform::Handle /*device*/, std::int32_t number) {
  Note("claim " + std::to_string(number));
  return claimResult;
}

std::int32_t VirtualLibusb::ReleaseInterface(platform::Handle /*device*/, std::int32_t number) {
  Note("release " + std::to_string(number));
  return 0;
}

std::int32_t VirtualLibusb::SetConfiguration(platform::Handle /*device*/, std::int32_t configuration) {
  Note("configuration " + std::to_string(configuration));
  return 0;
}

std::int32_t VirtualLibusb::BulkRead(platform::Handle /*handle*/, std::int32_t endpoint,
                                     std::span<std::uint8_t> bytes, std::int32_t timeout) {
  transfers.push_back({true, endpoint, bytes.size(), timeout});
  Event event{EventKind::kRead};
  if (!toRead.empty()) {
    event.bytes = std::move(toRead.front());
    toRead.pop_front();
    event.bytes.resize(std::min(event.bytes.size(), bytes.size()));
    std::ranges::copy(event.bytes, bytes.begin());
  } else if (device != nullptr) {
    event.bytes.resize(device->Take(bytes));
    std::copy_n(bytes.begin(), event.bytes.size(), event.bytes.begin());
  }
  event.ok = !event.bytes.empty();
  transcript_.Add(event);
  return event.ok ? static_cast<std::int32_t>(event.bytes.size()) : -1;
}

std::int32_t VirtualLibusb::BulkWrite(platform::Handle /*handle*/, std::int32_t endpoint,
                                      std::span<const std::uint8_t> bytes, std::int32_t timeout) {
  transfers.push_back({false, endpoint, bytes.size(), timeout});
  transcript_.Add(BytesEvent(EventKind::kWrite, bytes));
  if (device != nullptr) device->Receive(bytes);
  return writeResult.value_or(static_cast<std::int32_t>(bytes.size()));
}

}  // namespace tavlyn::sim
