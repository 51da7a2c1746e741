#include "tools/tavlynctl/watch/attached.h"

#include "tools/tavlynctl/reach/reach.h"

namespace tavlyn::ctl {
namespace {

std::vector<std::string> ExistingPorts(const Link& link) {
  std::vector<std::string> ports;
  for (unsigned number = link.firstPort; number <= link.lastPort; ++number) {
    if (LookAtPort(number).state != PortState::kMissing)
      ports.push_back("COM" + std::to_string(number) + ":");
  }
  return ports;
}

}  // namespace

std::vector<std::string> AttachedPaths(const Link& link, std::uint32_t product) {
  if (link.kind == LinkKind::kUsb) return AttachedHidPaths(product);
  return link.kind == LinkKind::kSerial ? ExistingPorts(link) : std::vector<std::string>();
}

}  // namespace tavlyn::ctl
