// Shows a device model to this very machine through /dev/uhid: the kernel makes a hidraw node for it, and
// every program sees it as a HID device on USB. Needs the kernel's uhid module and the right to open
// /dev/uhid.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "sim/devices/device.h"

namespace tavlyn::sim {

// The report descriptor that a device of this identity has.
std::vector<std::uint8_t> ReportDescriptor(const HidIdentity& identity);

// One plugged-in model. Nothing is served but inside Serve(): the owner's loop polls Fd() of all its devices
// for input, with a time limit of a few milliseconds, and then calls Serve() on each, so that input reports
// which the model queues by itself leave it too. The model must outlive this object.
class UhidCarrier {
 public:
  explicit UhidCarrier(HidDevice& model);
  ~UhidCarrier() { Unplug(); }
  UhidCarrier(const UhidCarrier&) = delete;
  UhidCarrier& operator=(const UhidCarrier&) = delete;

  // False: errno tells why. The node appears a moment later, once the kernel has read the descriptor.
  bool Plug();
  void Unplug();

  // Path of the node that the kernel made for it; empty while there is none.
  [[nodiscard]] std::string Node() const;

  // -1 while unplugged; poll() leaves such a number out by itself.
  [[nodiscard]] int Fd() const { return fd_; }

  // Answers what the kernel has asked meanwhile and hands it the queued input reports. Waits for nothing.
  // A model that is no longer present is unplugged.
  void Serve();

 private:
  void AnswerGet(std::uint32_t id, std::uint8_t reportNumber, std::uint8_t reportType);
  void AnswerSet(std::uint32_t id, std::uint8_t reportType, std::span<const std::uint8_t> report);
  void SendInput();

  HidDevice& model_;
  std::string place_;  // where it is plugged in, told apart from every other device of this machine
  int fd_ = -1;
  bool open_ = false;  // some program holds the node open
};

}  // namespace tavlyn::sim
