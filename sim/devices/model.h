// What the models of USB devices share: being plugged in, and passing feature reports through the armed
// faults.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "sim/devices/device.h"
#include "sim/devices/faults.h"
#include "sim/devices/memory.h"

namespace tavlyn::sim {

class Model : public HidDevice {
 public:
  explicit Model(HidIdentity shown);

  Faults faults;
  HidIdentity identity;

  // What distinguishes it from others of its kind.
  virtual void SetSerial(const std::string& serial) { identity.serial = serial; }
  virtual void SetLuid(std::uint16_t luid) = 0;
  // Passes what it keeps without power; having taken it in it starts anew.
  virtual void Keep(Memory& memory) = 0;

  // Called after anything that a program may have changed: what a person sees is noted then.
  virtual void Look() {}

  void Unplug() { plugged_ = false; }
  void PlugIn() { plugged_ = true; }
  // Working memory is lost, committed memory comes back.
  virtual void PowerCycle() = 0;

  [[nodiscard]] const HidIdentity& Identity() const override { return identity; }
  bool SetFeature(std::span<const std::uint8_t> payload) final;
  bool GetFeature(std::span<std::uint8_t> payload) final;
  bool TakeInput(std::vector<std::uint8_t>&) override { return false; }
  [[nodiscard]] bool Present() const final { return plugged_ && !faults.Vanished(); }

 protected:
  static constexpr std::size_t kLongest = 24;
  using Report = std::array<std::uint8_t, kLongest>;
  using Payload = std::span<const std::uint8_t>;

  // A report that has arrived, padded with zeros to the device's length. False stalls it.
  virtual bool TakeReport(Payload report) = 0;
  // Called at each fetch, refused or not.
  virtual void BeginFetch() {}

  // The last command accepted, and what a fetch returns.
  [[nodiscard]] Payload Command() const { return std::span(command_).first(identity.featureBytes); }
  void SetCommand(Payload command);
  void SetReply(Payload reply);

 private:
  Report command_{};
  Report reply_{};
  Report fetched_{};  // what the last fetch returned
  bool late_ = false;
  bool plugged_ = true;
};

}  // namespace tavlyn::sim
