// A device of the simulated system for each stage, fresh whenever one is wanted.
#pragma once

#include <cstdint>
#include <memory>

#include "sim/devices/device.h"
#include "tests/faults/operations.h"

namespace tavlyn::faults {

class SimulatedStage {
 public:
  // The library is loaded; from now on connects look for this device.
  explicit SimulatedStage(Stage stage);

  // Replaces the device by one that nobody has touched. Nothing may have it open.
  void Refresh();
  // How many handles, ports and sockets are open.
  [[nodiscard]] static int Open();

 private:
  void Attach();
  void Search() const;

  Stage stage_;
  std::shared_ptr<sim::ByteDevice> line_;  // null for a device on reports
};

}  // namespace tavlyn::faults
