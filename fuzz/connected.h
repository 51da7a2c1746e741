// A freshly loaded library on a simulated system, for the life of the object; and one that has searched for
// one simulated device.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "api.h"
#include "core/front/load.h"
#include "core/state.h"
#include "fuzz/require.h"
#include "sim/carriers/virtual_host.h"

namespace tavlyn::fuzz {

// Every bit that an error word can have.
inline constexpr std::uint32_t kErrorBits =
    TAVLYN_ERR_SEP_NULL | TAVLYN_ERR_SEP_UNREAD | TAVLYN_ERR_ASCII_ANSWER | TAVLYN_ERR_WRITE_REPORT |
    TAVLYN_ERR_CONFIG_READ | TAVLYN_ERR_CONFIG_WRITE | TAVLYN_ERR_RESET | TAVLYN_ERR_GET | TAVLYN_ERR_SET |
    TAVLYN_ERR_TIME_PARMS | TAVLYN_ERR_CHR_CNT | TAVLYN_ERR_ANALYZER_DATA | TAVLYN_ERR_SET_MODULE |
    TAVLYN_ERR_GET_MODULE | TAVLYN_ERR_FULL_FW_VERSION | TAVLYN_ERR_SECURE | TAVLYN_ERR_INTEGRITY;

// What holds between any two calls.
inline void CheckState() {
  sim::VirtualHost& host = sim::VirtualHost::Instance();
  Require(host.mutex.Depth() == 0);
  Require(host.Misuses().empty());
  Require(shared.DevCnt >= 0 && shared.DevCnt <= kTableEntries);
  Require(shared.ActDev >= 0 && shared.ActDev < kTableEntries);
  for (const tsDevEntry& entry : LiveEntries()) {
    Require(entry.MaxConfig < kCfgSlots && entry.ActConfig < kCfgSlots);
    Require((entry.LastLibErr & ~kErrorBits) == 0);
  }
}

class Loaded {
 public:
  Loaded() {
    host.transcript.keeps = false;
    host.Reset();
    Load();
  }
  ~Loaded() {
    CheckState();
    Unload();
    Require(host.Misuses().empty());
  }
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;

  sim::VirtualHost& host = sim::VirtualHost::Instance();
};

class Connected : public Loaded {
 public:
  // product is a bit of SetConnectProduct.
  Connected(std::uint32_t product, std::shared_ptr<sim::HidDevice> device) {
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
  }
  Connected(const Connected&) = delete;
  Connected& operator=(const Connected&) = delete;

  bool read = false;  // the device was found and its configuration read
};

}  // namespace tavlyn::fuzz
