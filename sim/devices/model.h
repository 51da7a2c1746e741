// What the models of USB devices share: their place on the cable, and a feature report's way past the faults
// that are armed.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "sim/devices/device.h"
#include "sim/devices/faults.h"

namespace tavlyn::sim {

class Model : public HidDevice {
 public:
  explicit Model(HidIdentity shown);

  Faults faults;
  HidIdentity identity;

  // What tells it from others of its kind.
  virtual void SetSerial(const std::string& serial) { identity.serial = serial; }
  virtual void SetLuid(std::uint16_t luid) = 0;

  void Unplug() { plugged_ = false; }
  void PlugIn() { plugged_ = true; }

  [[nodiscard]] const HidIdentity& Identity() const override { return identity; }
  bool SetFeature(std::span<const std::uint8_t> payload) final;
  bool GetFeature(std::span<std::uint8_t> payload) final;
  bool TakeInput(std::vector<std::uint8_t>&) override { return false; }
  [[nodiscard]] bool Present() const final { return plugged_ && !faults.Vanished(); }

 protected:
  static constexpr std::size_t kLongest = 24;
  using Report = std::array<std::uint8_t, kLongest>;
  using Payload = std::span<const std::uint8_t>;

  // A report as it arrived, filled up with zeros to the device's length. False: it was stalled.
  virtual bool TakeReport(Payload report) = 0;
  // A fetch, refused or not, is on its way.
  virtual void BeginFetch() {}

  // The last command taken, and what a fetch brings.
  [[nodiscard]] Payload Command() const { return std::span(command_).first(identity.featureBytes); }
  void SetCommand(Payload command);
  void SetReply(Payload reply);

 private:
  Report command_{};
  Report reply_{};
  Report fetched_{};  // what the last fetch brought
  bool late_ = false;
  bool plugged_ = true;
};

}  // namespace tavlyn::sim
