// The COM ports of the simulated system.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "sim/carriers/virtual_clock.h"
#include "sim/devices/device.h"
#include "sim/transcript.h"

namespace tavlyn::sim {

// A serial port with a device, or a script, at its other end. With clock set, its waits take time.
class VirtualComPort final : public platform::ComPort {
 public:
  VirtualComPort(Transcript& transcript, ByteDevice& device) : transcript_(transcript), device_(&device) {}
  explicit VirtualComPort(Transcript& transcript) : transcript_(transcript) {}
  VirtualComPort(const VirtualComPort&) = delete;
  VirtualComPort& operator=(const VirtualComPort&) = delete;
  ~VirtualComPort() override;

  std::string name = "COM";
  VirtualClock* clock = nullptr;  // advanced by the wait of a Read that comes up short
  std::function<void()> onClosed;

  std::deque<std::uint8_t> toRead;  // comes before anything from the device
  Bytes written;
  std::optional<std::uint32_t> writeLimit;  // the most bytes that a Write moves
  std::function<void()> onTimeout;          // a Read came up short

  platform::ComTimeouts timeouts;
  bool closedQuietly = false;

  std::uint32_t Read(std::span<std::uint8_t> bytes) override;
  std::uint32_t Write(std::span<const std::uint8_t> bytes) override;
  void SetTimeouts(const platform::ComTimeouts& set) override;
  void PurgeInput() override;
  void Flush() override;
  void CloseQuietly() override { closedQuietly = true; }

 private:
  void DropInput();

  Transcript& transcript_;
  ByteDevice* device_ = nullptr;
};

// The ports that exist, with or without a device at the other end. Each can be opened only once at a time.
class VirtualComPorts final : public platform::ComPorts {
 public:
  explicit VirtualComPorts(Transcript& transcript) : transcript_(transcript) {}
  std::map<std::uint16_t, ByteDevice*> present;  // null: opens, and nothing ever answers
  std::set<std::uint16_t> virtualNumbers;
  std::set<std::uint16_t> inUse;
  // For the ports opened from now on.
  std::function<void()> onTimeout;
  VirtualClock* clock = nullptr;

  struct Opened {
    std::uint16_t number;
    platform::ComLine line;
    platform::ComTimeouts timeouts;
  };
  std::vector<Opened> opened;
  int scans = 0;

  void Reset();
  std::unique_ptr<platform::ComPort> Open(std::uint16_t number, const platform::ComLine& line,
                                          const platform::ComTimeouts& timeouts) override;
  void FindVirtual(platform::PortFlags flags) override;

 private:
  Transcript& transcript_;
};

}  // namespace tavlyn::sim
