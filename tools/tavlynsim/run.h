// The command that runs a program with simulated devices.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace tavlyn::sim {

inline constexpr const char* kProgram = "tavlynsim";

// Exit statuses of tavlynsim's own; otherwise that of the command.
inline constexpr int kBadUsage = 1;
inline constexpr int kCannotSimulate = 125;
inline constexpr int kCannotRun = 126;
inline constexpr int kNotFound = 127;

// Adds the command run. What it gives runs it with the words that the program was then given.
std::function<int()> AddRun(CLI::App& app);

}  // namespace tavlyn::sim
