// A simulated device as its carriers see it. A model does no input or output of its own: it is handed reports
// or bytes, answers as the firmware would, and keeps its state until it is destroyed.
//
// The models deliberately share no type and no code with the library, even where the two are the same, such
// as a usage or a block of eight bytes: an error in shared code would be made on both sides and never be
// noticed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tavlyn::sim {

// The halves of a word, in the order in which devices send them.
constexpr std::uint8_t Low(std::size_t word) { return static_cast<std::uint8_t>(word & 0xFFU); }
constexpr std::uint8_t High(std::size_t word) { return static_cast<std::uint8_t>(word >> 8U & 0xFFU); }

struct Usage {
  std::uint16_t page = 0;
  std::uint16_t usage = 0;
};

// How a device appears on USB: one HID interface.
struct HidIdentity {
  std::uint16_t vid = 0;
  std::uint16_t pid = 0;
  std::vector<Usage> usages{};   // its top-level collections
  std::uint8_t reportId = 0;     // of its feature report; 0: unnumbered
  std::size_t featureBytes = 8;  // payload of its feature report, without the ID
  std::string product{};
  std::string serial{};
  std::size_t spareBytes = 0;  // a report may be this much longer; the extra bytes carry nothing

  [[nodiscard]] bool Takes(std::size_t payloadBytes) const {
    return payloadBytes <= featureBytes + spareBytes;
  }
};

class HidDevice {
 public:
  virtual ~HidDevice() = default;
  [[nodiscard]] virtual const HidIdentity& Identity() const = 0;
  // Payloads exclude the report ID. False if the device refused (a stalled control transfer) or is gone.
  virtual bool SetFeature(std::span<const std::uint8_t> payload) = 0;
  virtual bool GetFeature(std::span<std::uint8_t> payload) = 0;
  // Takes the oldest queued input report, with its report ID if the device numbers them; false if there is
  // none.
  virtual bool TakeInput(std::vector<std::uint8_t>& report) = 0;
  // False once unplugged or vanished by a fault: no system lists it any more and every exchange fails.
  [[nodiscard]] virtual bool Present() const = 0;
};

// The serial side of a device: a byte stream in each direction.
class ByteDevice {
 public:
  virtual ~ByteDevice() = default;
  virtual void Receive(std::span<const std::uint8_t> bytes) = 0;
  // Takes up to bytes.size() bytes that the device has sent, and returns their count.
  virtual std::size_t Take(std::span<std::uint8_t> bytes) = 0;
  // The line was quiet for long, or the other side hung up: an unfinished command is dropped.
  virtual void Silence() {}
  // True once each time the device has cut the line, after everything that it sent before.
  virtual bool TakeCut() { return false; }
};

}  // namespace tavlyn::sim
