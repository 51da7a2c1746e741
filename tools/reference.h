// What the manual page of a tool has besides its command line.
#pragma once

#include <span>

namespace tavlyn {

struct ExitStatus {
  const char* status;
  const char* meaning;
};

// A command line that ends well with certain devices.
struct Example {
  const char* command;  // that it shows: "config save"
  const char* line;
  const char* text;
  const char* devices = "";  // options of tavlynsim run
  const char* before = "";   // what has to be done first
};

namespace ctl {
std::span<const ExitStatus> ExitStatuses();
std::span<const Example> Examples();
}  // namespace ctl

namespace sim {
std::span<const ExitStatus> ExitStatuses();
std::span<const Example> Examples();
}  // namespace sim

namespace agent {
std::span<const ExitStatus> ExitStatuses();
}  // namespace agent

}  // namespace tavlyn
