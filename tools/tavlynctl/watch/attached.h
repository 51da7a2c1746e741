// What is attached now, asked of the system and not of a device: a connect would interrupt those in use.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/tavlynctl/link.h"

namespace tavlyn::ctl {

// Where a device of the product may be, named as the library names its devices: HID interfaces of known
// identities, the ports of a search that exist. Nothing behind adapters.
std::vector<std::string> AttachedPaths(const Link& link, std::uint32_t product);

// What the system knows.
std::vector<std::string> AttachedHidPaths(std::uint32_t product);
// Another number after a device's node has come or gone; nothing if the system does not tell.
std::optional<std::int64_t> StampOfNodes();

// For whoever asks again and again: the system goes through every device for a list, so it is made anew only
// after a node has come or gone, or now and then.
class AttachedList {
 public:
  const std::vector<std::string>& Paths(const Link& link, std::uint32_t product);

 private:
  std::vector<std::string> paths_;
  std::optional<std::int64_t> stamp_;
  std::chrono::steady_clock::time_point made_;
};

}  // namespace tavlyn::ctl
