// A device that is not a product of ours: it returns what it was last sent, each byte inverted.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "sim/devices/device.h"

namespace tavlyn::kernel {

class Mirror : public sim::HidDevice {
 public:
  explicit Mirror(sim::HidIdentity identity) : identity_(std::move(identity)) {}

  [[nodiscard]] const sim::HidIdentity& Identity() const override { return identity_; }
  bool SetFeature(std::span<const std::uint8_t> payload) override {
    ++exchanges;
    if (refusing) return false;
    received.assign(payload.begin(), payload.end());
    return true;
  }
  bool GetFeature(std::span<std::uint8_t> payload) override {
    ++exchanges;
    if (refusing) return false;
    for (std::size_t i = 0; i < payload.size() && i < received.size(); ++i) {
      payload[i] = static_cast<std::uint8_t>(~received[i]);
    }
    return true;
  }
  bool TakeInput(std::vector<std::uint8_t>& report) override {
    if (input.empty()) return false;
    report = input.front();
    input.erase(input.begin());
    return true;
  }
  [[nodiscard]] bool Present() const override { return present; }

  bool present = true;
  bool refusing = false;
  int exchanges = 0;
  std::vector<std::uint8_t> received;
  std::vector<std::vector<std::uint8_t>> input;

 private:
  sim::HidIdentity identity_;
};

}  // namespace tavlyn::kernel
