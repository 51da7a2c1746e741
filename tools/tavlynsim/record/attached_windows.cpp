#include "tools/tavlynsim/record/attached.h"

namespace tavlyn::sim {

std::unique_ptr<Source> AttachedDevices(std::string& problem) {
  problem = "on Windows the devices of the machine cannot be recorded, only simulated ones";
  return nullptr;
}

}  // namespace tavlyn::sim
