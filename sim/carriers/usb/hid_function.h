// HID interfaces as one USB device.
#pragma once

#include <vector>

#include "sim/carriers/usb/device.h"
#include "sim/devices/device.h"

namespace tavlyn::sim::usb {

class HidFunction final : public Device {
 public:
  // The models, interface 0 first, must outlive this object; the first one's identity is the device's.
  explicit HidFunction(std::vector<HidDevice*> models);

  [[nodiscard]] const Face& GetFace() const override { return face_; }
  bool Control(const Setup& setup, Bytes& data) override;
  void Out(std::uint8_t, std::span<const std::uint8_t>) override {}
  Bytes In(std::uint8_t endpoint, std::size_t most) override;
  [[nodiscard]] bool Present() const override;

 private:
  std::vector<HidDevice*> models_;
  Face face_;
};

}  // namespace tavlyn::sim::usb
