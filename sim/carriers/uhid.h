// Shows a device model to this machine through /dev/uhid: the kernel makes a hidraw node for it, and every
// program sees it as a HID device on USB. Needs the kernel's uhid module and permission to open /dev/uhid.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "sim/devices/device.h"

struct uhid_event;

namespace tavlyn::sim {

// The report descriptor that a device of this identity has.
std::vector<std::uint8_t> ReportDescriptor(const HidIdentity& identity);

// One plugged-in model. It is served only inside Serve(): the owner's loop polls Fd() of all its devices for
// input, with a time limit of a few milliseconds, and then calls Serve() on each, so that input reports which
// the model queues by itself go out too. The model must outlive this object.
class UhidCarrier {
 public:
  explicit UhidCarrier(HidDevice& model);
  ~UhidCarrier() { Unplug(); }
  UhidCarrier(const UhidCarrier&) = delete;
  UhidCarrier& operator=(const UhidCarrier&) = delete;

  // False on failure, with errno. The node appears a moment later, once the kernel has read the descriptor.
  bool Plug();
  void Unplug();

  // Path of the node that the kernel made for it; empty while there is none.
  [[nodiscard]] std::string Node() const;

  // -1 while unplugged; poll() ignores negative descriptors.
  [[nodiscard]] int Fd() const { return fd_; }

  // Answers what the kernel has asked so far and passes it the queued input reports, without waiting. A model
  // that is no longer present is unplugged.
  void Serve();

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
