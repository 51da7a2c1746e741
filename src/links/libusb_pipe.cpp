#include "links/libusb_pipe.h"

#include <algorithm>
#include <array>

#include "core/state.h"

namespace tavlyn {
namespace {

constexpr platform::HidIds kBulkDevice{0x171B, 0x1004};
constexpr std::int32_t kInterface = 0;
constexpr std::int32_t kConfiguration = 1;
constexpr std::int32_t kBulkIn = 0x83;
constexpr std::int32_t kBulkOut = 0x03;
constexpr std::int32_t kTimeoutMs = 250;
constexpr std::int32_t kChunk = 32;
constexpr std::size_t kDrainBytes = 25;
constexpr int kMostReads = 5;
// With at most this many reads the result deliberately counts the bytes from the ring, too.
constexpr int kQuickReads = 3;

platform::Libusb& Usb() { return platform::TheHost().usb; }

// The surplus bytes themselves are not kept: the ring hands out zeros for them.
void TakeFromRing(std::span<std::uint8_t> bytes) { std::ranges::fill(bytes, std::uint8_t{0}); }

}  // namespace

void RefreshLibusb() {
  if (!Usb().Load() || Usb().FindBusses() < 0) return;
  Usb().FindDevices();
}

platform::Handle OpenLibusbDevice() {
  const platform::Handle device = Usb().Open(kBulkDevice);
  if (device == platform::kNoHandle) return device;
  if (Usb().ClaimInterface(device, kInterface) < 0) {
    Usb().Close(device);
    return platform::kNoHandle;
  }
  Usb().SetConfiguration(device, kConfiguration);
  LibusbDrain(device);
  return device;
}

void CloseLibusbDevice(platform::Handle device) {
  Usb().ReleaseInterface(device, kInterface);
  Usb().Close(device);
}

std::int32_t LibusbRead(platform::Handle device, std::span<std::uint8_t> bytes) {
  auto n = static_cast<std::int32_t>(bytes.size());
  std::int32_t base = 0;
  if (shared.link.ringCount >= n) {
    TakeFromRing(bytes);
    shared.link.ringCount -= n;
    return n;
  }
  if (shared.link.ringCount > 0) {
    base = shared.link.ringCount;
    TakeFromRing(bytes.first(static_cast<std::size_t>(base)));
    n -= base;
    // Deliberately subtracts the bytes still wanted, not the bytes taken: the count may go below 0, and later
    // surplus then counts for less.
    shared.link.ringCount -= n;
  }
  std::array<std::uint8_t, kMostReads * kChunk> scratch{};
  std::int32_t got = 0;
  int reads = 0;
  for (; reads < kMostReads && got < n; ++reads) {
    const std::span<std::uint8_t> chunk = std::span(scratch).subspan(static_cast<std::size_t>(got), kChunk);
    got += std::clamp(Usb().BulkRead(device, kBulkIn, chunk, kTimeoutMs), 0, kChunk);
  }
  if (got < n) return 0;
  std::copy_n(scratch.begin(), n, bytes.begin() + base);
  shared.link.ringCount += got - n;
  return reads <= kQuickReads ? n + base : n;
}

void LibusbWrite(platform::Handle device, std::span<const std::uint8_t> bytes) {
  Usb().BulkWrite(device, kBulkOut, bytes, kTimeoutMs);
}

void LibusbDrain(platform::Handle device) {
  std::array<std::uint8_t, kDrainBytes> scratch;
  while (LibusbRead(device, scratch) > 0) {
  }
}

}  // namespace tavlyn
