// What is simulated, as the command line says it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/tavlynsim/kernel_show.h"
#include "tools/tavlynsim/record/devices.h"
#include "tools/tavlynsim/script.h"

namespace CLI {
class App;
}

namespace tavlyn::sim {

struct SimulationOptions {
  std::vector<std::string> devices;
  std::vector<std::string> lines;   // devices given by the short options
  std::vector<std::string> orders;  // commands of the rack, run before any program
  Timetable timetable;
  std::string speed;  // empty: that of the machine
  std::string scenario;
  std::string junit;
  std::string state;  // the file that keeps the memory of the devices
  Carrier carrier = Carrier::kHidapi;
  RecordingOptions recording;
  bool exposed = false;             // to the network, beyond the loopback
  std::optional<bool> interactive;  // if unset, only on a terminal
};

// The options that every command with simulated devices has.
void AddSimulationWords(CLI::App& run, SimulationOptions& options);
// What was left out gets its value.
void Complete(SimulationOptions& options);

}  // namespace tavlyn::sim
