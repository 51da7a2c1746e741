#pragma once

#include <string>
#include <vector>

#include "tools/tavlynsim/script.h"

namespace tavlyn::sim {

inline constexpr const char* kProgram = "tavlynsim";

enum class Carrier { kHidapi, kUhid };

// Exit statuses of tavlynsim's own; otherwise that of the command.
inline constexpr int kBadUsage = 1;
inline constexpr int kCannotSimulate = 125;
inline constexpr int kCannotRun = 126;
inline constexpr int kNotFound = 127;

struct RunOptions {
  std::vector<std::string> devices;
  std::vector<std::string> lines;   // devices given by short words
  std::vector<std::string> orders;  // commands of the rack, run before the command is
  Timetable timetable;
  Carrier carrier = Carrier::kHidapi;
  bool exposed = false;  // to the network, beyond the loopback
  bool interactive = false;
  std::vector<std::string> command;
};

int Run(const RunOptions& options);

}  // namespace tavlyn::sim
