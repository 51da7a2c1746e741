#include "tools/tavlynsim/ports.h"

namespace tavlyn::sim {

std::unique_ptr<Served> MakePort(ByteDevice&, const std::string&, unsigned, std::string& problem) {
  problem = "serial ports are simulated on Linux only";
  return nullptr;
}

}  // namespace tavlyn::sim
