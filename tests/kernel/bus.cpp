#include "tests/kernel/bus.h"

#include <poll.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>

#include "sim/carriers/uhid.h"
#include "sim/carriers/usb/hid_function.h"
#include "sim/carriers/usb/vhci.h"
#include "tests/kernel/checks.h"

namespace tavlyn::kernel {
namespace {

using std::chrono::milliseconds;

constexpr int kNodeAttempts = 100;
constexpr milliseconds kBetweenAttempts(50);

std::unique_ptr<sim::KernelCarrier> MakeCarrier(sim::HidDevice& model) {
  using namespace sim::usb;
  if (onUsb) return std::make_unique<VhciCarrier>(std::make_unique<HidFunction>(std::vector{&model}));
  return std::make_unique<sim::UhidCarrier>(model);
}

}  // namespace

Bus::Bus() : thread_([this] { Run(); }) {}

Bus::~Bus() {
  Locked([this] { stopping_ = true; });
  thread_.join();
}

void Bus::Run() {
  for (;;) {
    std::vector<pollfd> polled{{waker_.Polled(), POLLIN, 0}};
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      if (stopping_) return;
      for (sim::KernelCarrier* carrier : carriers_) {
        carrier->Serve();
        polled.push_back({carrier->Fd(), POLLIN, 0});
      }
    }
    (void)poll(polled.data(), polled.size(), -1);
    waker_.Clear();
  }
}

Plugged::Plugged(Bus& bus, sim::HidDevice& model) : bus_(bus), carrier_(MakeCarrier(model)) {
  if (!carrier_->Plug()) {
    Check(false, std::string("the kernel takes a device: ") + std::strerror(errno));
    return;
  }
  bus_.Locked([this] { bus_.carriers_.push_back(carrier_.get()); });
  for (int attempt = 0; node_.empty() && attempt < kNodeAttempts; ++attempt) {
    std::this_thread::sleep_for(kBetweenAttempts);
    node_ = carrier_->Node();
  }
  if (node_.empty()) Check(false, "the kernel makes a node for " + model.Identity().product);
}

Plugged::~Plugged() {
  bus_.Locked([this] {
    std::erase(bus_.carriers_, carrier_.get());
    carrier_->Unplug();
  });
  for (int attempt = 0; std::filesystem::exists(node_) && attempt < kNodeAttempts; ++attempt) {
    std::this_thread::sleep_for(kBetweenAttempts);
  }
}

}  // namespace tavlyn::kernel
