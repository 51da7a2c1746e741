#include <cerrno>
#include <cstring>

#include "sim/carriers/pseudo_terminal.h"
#include "tools/tavlynsim/ports.h"

namespace tavlyn::sim {

std::unique_ptr<Served> MakePort(ByteDevice& device, const std::string& folder, unsigned number,
                                 std::string& problem) {
  const std::string link = folder + "/com" + std::to_string(number);
  auto port = std::make_unique<PseudoTerminal>(device, link);
  if (port->IsPlugged()) return port;
  problem = errno == EEXIST
                ? link + " is there already; remove it, or name another folder in TAVLYNAPI_PORT_DIR"
                : std::strerror(errno);
  return nullptr;
}

}  // namespace tavlyn::sim
