#include <cerrno>
#include <cstring>

#include "sim/carriers/pseudo_terminal.h"
#include "tools/tavlynsim/ports.h"

namespace tavlyn::sim {

std::unique_ptr<Served> MakePort(ByteDevice& device, const std::string& folder, unsigned number,
                                 std::string& problem) {
  auto port = std::make_unique<PseudoTerminal>(device, folder + "/com" + std::to_string(number));
  if (port->IsPlugged()) return port;
  problem = std::strerror(errno);
  return nullptr;
}

}  // namespace tavlyn::sim
