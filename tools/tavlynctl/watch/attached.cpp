#include "tools/tavlynctl/watch/attached.h"

#include "tools/tavlynctl/reach/reach.h"

namespace tavlyn::ctl {
namespace {

constexpr std::chrono::seconds kListLasts(10);

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

const std::vector<std::string>& AttachedList::Paths(const Link& link, std::uint32_t product) {
  const auto now = std::chrono::steady_clock::now();
  const auto stamp = link.kind == LinkKind::kUsb ? StampOfNodes() : std::nullopt;
  if (!stamp || stamp != stamp_ || now - made_ >= kListLasts) {
    paths_ = AttachedPaths(link, product);
    stamp_ = stamp;
    made_ = now;
  }
  return paths_;
}

}  // namespace tavlyn::ctl
