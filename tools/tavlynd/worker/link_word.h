// A worker's link, as one word of its command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tools/tavlynctl/link.h"

namespace tavlyn::agent {

struct WorkerLink {
  ctl::Link link;
  std::uint32_t product;  // as GetProduct returns it
  std::string name;       // the same in whatever dialect
};

// "usb:reader", "usb:magstripe", "usb:sonar", "com3", "com3:ascii", "10.0.0.5:10001", "10.0.0.5:10001:ascii".
std::optional<WorkerLink> ParseWorkerLink(std::string word);

}  // namespace tavlyn::agent
