// What the kernel's vhci_hcd and a device at the other end of its socket say to each other: USB/IP. Each
// message begins with 48 bytes in network order. The kernel submits transfers and takes back those that it no
// longer waits for; each submission is answered when the device has something to answer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <span>

#include "sim/carriers/usb/device.h"

namespace tavlyn::sim::usb {

class UsbipSession {
 public:
  explicit UsbipSession(Device& device) : device_(device) {}

  // What arrived, in any pieces. False if it cannot be USB/IP, or sends more in one transfer than any device
  // of ours takes: the session is then over.
  bool Receive(std::span<const std::uint8_t> bytes);
  // Answers the transfers for which the device has something by now.
  void Serve();

  // What is to go out, and how much of it has.
  [[nodiscard]] std::span<const std::uint8_t> Due() const { return out_; }
  void Sent(std::size_t count) {
    out_.erase(out_.begin(), out_.begin() + static_cast<std::ptrdiff_t>(count));
  }

 private:
  struct Waiting {
    std::uint32_t number;
    std::uint8_t endpoint;
    std::size_t most;
  };

  // The bytes of the first message that has arrived whole; 0 if none has, or it is not one.
  [[nodiscard]] std::size_t WholeMessage();
  void Take(std::span<const std::uint8_t> message);
  void Submit(std::span<const std::uint8_t> message);
  void Control(std::span<const std::uint8_t> message);
  void Unlink(std::span<const std::uint8_t> message);
  void Answer(std::uint32_t number, std::int32_t status, std::size_t moved, const Bytes& data);
  [[nodiscard]] bool Has(std::uint8_t endpoint) const;

  Device& device_;
  Bytes in_;
  Bytes out_;
  std::deque<Waiting> waiting_;  // for the device to send
  bool over_ = false;
};

}  // namespace tavlyn::sim::usb
