// Byte streams as USB devices: the bulk device, and a virtual serial port.
#pragma once

#include "sim/carriers/usb/device.h"
#include "sim/devices/device.h"
#include "sim/paced_line.h"

namespace tavlyn::sim::usb {

// The line must outlive this object. One that is cut takes the device off the bus.
class BulkFunction final : public Device {
 public:
  explicit BulkFunction(ByteDevice& line) : line_(line) {}

  [[nodiscard]] const Face& GetFace() const override;
  bool Control(const Setup&, Bytes&) override { return false; }
  void Out(std::uint8_t, std::span<const std::uint8_t> bytes) override { line_.Receive(bytes); }
  Bytes In(std::uint8_t endpoint, std::size_t most) override;
  [[nodiscard]] bool Present() const override { return !cut_; }

 private:
  ByteDevice& line_;
  bool cut_ = false;
};

class SerialFunction final : public Device {
 public:
  // manner: how slowly it answers; both must outlive this object.
  SerialFunction(ByteDevice& line, const LineManner& manner) : line_(line), manner_(manner) {}

  [[nodiscard]] const Face& GetFace() const override;
  bool Control(const Setup& setup, Bytes& data) override;
  void Out(std::uint8_t endpoint, std::span<const std::uint8_t> bytes) override;
  Bytes In(std::uint8_t endpoint, std::size_t most) override;
  [[nodiscard]] bool Present() const override { return !cut_; }

 private:
  PacedLine line_;
  const LineManner& manner_;
  Bytes coding_{0x80, 0x25, 0, 0,
                0,    0,    8};  // 9600 8N1, as the host last set it; the bytes are not paced by it
  bool cut_ = false;
};

}  // namespace tavlyn::sim::usb
