// A freshly loaded library that has searched for one simulated device, for the life of the object.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "api.h"
#include "core/front/load.h"
#include "fuzz/scratch_file.h"
#include "sim/carriers/virtual_host.h"

namespace tavlyn::fuzz {

class Connected {
 public:
  // product is a bit of SetConnectProduct.
  Connected(std::uint32_t product, std::shared_ptr<sim::HidDevice> device) {
    host.Reset();
    Load();
    host.hid.Plug("device", std::move(device));
    SetDevTypeSrch(0);
    SetConnectProduct(product);
    read = USBConnect(nullptr) == 1;
  }
  // Whatever the device did, nothing stays open or locked.
  ~Connected() {
    USBDisconnect();
    Require(host.hid.OpenHandles() == 0);
    Require(host.mutex.Depth() == 0);
    Unload();
    Require(host.Misuses().empty());
  }
  Connected(const Connected&) = delete;
  Connected& operator=(const Connected&) = delete;

  sim::VirtualHost& host = sim::VirtualHost::Instance();
  bool read = false;  // the device was found and its configuration read
};

}  // namespace tavlyn::fuzz
