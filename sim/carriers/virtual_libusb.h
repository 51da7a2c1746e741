// libusb-0.1 with at most one device. Without the library nothing appears in the transcript.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "sim/devices/device.h"
#include "sim/transcript.h"

namespace tavlyn::sim {

class VirtualLibusb final : public platform::Libusb {
 public:
  explicit VirtualLibusb(Transcript& transcript) : transcript_(transcript) {}
  bool loads = false;
  std::int32_t busses = 1;
  bool present = false;
  std::int32_t claimResult = 0;
  std::deque<Bytes> toRead;                 // one entry per bulk read; an empty one fails
  std::optional<std::int32_t> writeResult;  // unset: the count
  ByteDevice* device = nullptr;
  int loadsAsked = 0;
  int openHandles = 0;

  struct Transfer {
    bool in;
    std::int32_t endpoint;
    std::size_t bytes;
    std::int32_t timeout;
    bool operator==(const Transfer&) const = default;
  };
  std::vector<Transfer> transfers;

  void Reset();
  bool Load() override;
  std::int32_t FindBusses() override;
  std::int32_t FindDevices() override;
  platform::Handle Open(platform::HidIds ids) override;
  void Close(platform::Handle device) override;
  std::int32_t ClaimInterface(platform::Handle device, std::int32_t number) override;
  std::int32_t ReleaseInterface(platform::Handle device, std::int32_t number) override;
  std::int32_t SetConfiguration(platform::Handle device, std::int32_t configuration) override;
  std::int32_t BulkRead(platform::Handle device, std::int32_t endpoint, std::span<std::uint8_t> bytes,
                        std::int32_t timeout) override;
  std::int32_t BulkWrite(platform::Handle device, std::int32_t endpoint, std::span<const std::uint8_t> bytes,
                         std::int32_t timeout) override;

 private:
  void Note(std::string text);

  Transcript& transcript_;
  platform::Handle last_ = 2000;
};

}  // namespace tavlyn::sim
