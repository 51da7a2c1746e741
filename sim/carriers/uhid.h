// Shows a device model to this machine through /dev/uhid: the kernel makes a hidraw node for it, and every
// program sees it as a HID device on USB. Needs the kernel's uhid module and permission to open /dev/uhid.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "sim/carriers/kernel_carrier.h"
#include "sim/devices/device.h"

struct uhid_event;

namespace tavlyn::sim {

// One plugged-in model, which must outlive this object.
class UhidCarrier final : public KernelCarrier {
 public:
  explicit UhidCarrier(HidDevice& model);
  ~UhidCarrier() override { UhidCarrier::Unplug(); }
  UhidCarrier(const UhidCarrier&) = delete;
  UhidCarrier& operator=(const UhidCarrier&) = delete;

  bool Plug() override;
  void Unplug() override;
  [[nodiscard]] std::string Node() const override;
  [[nodiscard]] int Fd() const override { return fd_; }
  void Serve() override;

 private:
  void AnswerGet(std::uint32_t id, std::uint8_t reportNumber, std::uint8_t reportType);
  void AnswerSet(std::uint32_t id, std::uint8_t reportType, std::span<const std::uint8_t> report);
  void Answer(const uhid_event& event) const;
  void SendInput();

  HidDevice& model_;
  std::string place_;  // where it is plugged in, different from every other device of this machine
  int fd_ = -1;
  bool open_ = false;  // some program holds the node open
};

}  // namespace tavlyn::sim
