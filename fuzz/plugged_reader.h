// A library that has just been loaded and connected to one simulated reader, as long as the object lasts.
#pragma once

#include <memory>
#include <utility>

#include "api.h"
#include "core/front/load.h"
#include "fuzz/scratch_file.h"
#include "sim/carriers/virtual_host.h"
#include "sim/devices/reader.h"

namespace tavlyn::fuzz {

class PluggedReader {
 public:
  explicit PluggedReader(std::shared_ptr<sim::Reader> plugged) : reader(std::move(plugged)) {
    host.Reset();
    Load();
    host.hid.Plug("reader", reader);
    SetDevTypeSrch(0);
    SetConnectProduct(1);
    Require(USBConnect(nullptr) == 1);
  }
  ~PluggedReader() {
    Unload();
    Require(host.Misuses().empty());
  }
  PluggedReader(const PluggedReader&) = delete;
  PluggedReader& operator=(const PluggedReader&) = delete;

  // Feature reports so far.
  [[nodiscard]] int Exchanges() const { return reader->faults.Exchanges(); }

  sim::VirtualHost& host = sim::VirtualHost::Instance();
  std::shared_ptr<sim::Reader> reader;
};

}  // namespace tavlyn::fuzz
