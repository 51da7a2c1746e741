#include "tests/kernel/bus.h"

#include <poll.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>

#include "tests/kernel/checks.h"

namespace tavlyn::kernel {
namespace {

using std::chrono::milliseconds;

constexpr int kNodeAttempts = 500;  // of ten milliseconds each

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
      for (sim::UhidCarrier* carrier : carriers_) {
        carrier->Serve();
        polled.push_back({carrier->Fd(), POLLIN, 0});
      }
    }
    (void)poll(polled.data(), polled.size(), -1);
    waker_.Clear();
  }
}

Plugged::Plugged(Bus& bus, sim::HidDevice& model) : bus_(bus), carrier_(model) {
  if (!carrier_.Plug()) {
    Check(false, std::string("/dev/uhid takes a device: ") + std::strerror(errno));
    return;
  }
  bus_.Locked([this] { bus_.carriers_.push_back(&carrier_); });
  for (int attempt = 0; node_.empty() && attempt < kNodeAttempts; ++attempt) {
    std::this_thread::sleep_for(milliseconds(10));
    node_ = carrier_.Node();
  }
  if (node_.empty()) Check(false, "the kernel makes a node for " + model.Identity().product);
}

Plugged::~Plugged() {
  bus_.Locked([this] {
    std::erase(bus_.carriers_, &carrier_);
    carrier_.Unplug();
  });
  for (int attempt = 0; std::filesystem::exists(node_) && attempt < kNodeAttempts; ++attempt) {
    std::this_thread::sleep_for(milliseconds(10));
  }
}

}  // namespace tavlyn::kernel
