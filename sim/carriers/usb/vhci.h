// Plugs a device into the kernel's virtual USB host controller: the kernel's own drivers find it, make its
// nodes and talk to it. Needs the module vhci_hcd and root.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sim/carriers/kernel_carrier.h"
#include "sim/carriers/usb/usbip.h"

namespace tavlyn::sim::usb {

class VhciCarrier final : public KernelCarrier {
 public:
  explicit VhciCarrier(std::unique_ptr<Device> device) : device_(std::move(device)) {}
  ~VhciCarrier() override { VhciCarrier::Unplug(); }
  VhciCarrier(const VhciCarrier&) = delete;
  VhciCarrier& operator=(const VhciCarrier&) = delete;

  bool Plug() override;
  void Unplug() override;
  [[nodiscard]] std::string Node() const override;
  [[nodiscard]] int Fd() const override { return fd_; }
  void Serve() override;

 private:
  bool Attach(int fd);
  // False once the kernel has hung up.
  bool TakeBytes();
  void GiveBytes();
  [[nodiscard]] std::vector<std::string> Nodes() const;

  std::unique_ptr<Device> device_;
  std::optional<UsbipSession> session_;
  unsigned port_ = 0;
  int fd_ = -1;
};

}  // namespace tavlyn::sim::usb
