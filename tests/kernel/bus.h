// The devices plugged into the guest's kernel, served by a thread of their own: a program that queries a
// device waits inside the kernel until someone has answered for it.
#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "sim/carriers/kernel_carrier.h"
#include "sim/carriers/waker.h"
#include "sim/devices/device.h"

namespace tavlyn::kernel {

// Devices are plugged into the kernel's virtual USB host controller, below its usbhid; otherwise into its
// uhid.
inline bool onUsb = false;

class Bus {
 public:
  Bus();
  ~Bus();
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

  // Runs a change of a model while no exchange is going on.
  template <typename Change>
  auto Locked(Change change) {
    const Turn turn(*this);
    return change();
  }

 private:
  friend class Plugged;
  // Holds the lock for its lifetime; afterwards every device is served again.
  class Turn {
   public:
    explicit Turn(Bus& bus) : bus_(bus), lock_(bus.mutex_) {}
    ~Turn() { bus_.waker_.Wake(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

   private:
    Bus& bus_;
    std::lock_guard<std::mutex> lock_;
  };

  void Run();

  std::mutex mutex_;
  sim::Waker waker_;
  std::vector<sim::KernelCarrier*> carriers_;
  bool stopping_ = false;
  std::thread thread_;
};

// A model on the bus, as long as this object lives. The model and the bus must outlive it.
class Plugged {
 public:
  // Waits until the device's node is there; a failed check if none appears within five seconds.
  Plugged(Bus& bus, sim::HidDevice& model);
  // Waits until the node has gone again.
  ~Plugged();
  Plugged(const Plugged&) = delete;
  Plugged& operator=(const Plugged&) = delete;

  [[nodiscard]] const std::string& Node() const { return node_; }

 private:
  Bus& bus_;
  std::unique_ptr<sim::KernelCarrier> carrier_;
  std::string node_;
};

}  // namespace tavlyn::kernel
