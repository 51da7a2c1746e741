// The command that runs a program with simulated devices.
#pragma once

#include <functional>
#include <string>

namespace CLI {
class App;
}

namespace tavlyn::sim {

inline constexpr const char* kProgram = "tavlynsim";

// tavlynsim's own exit statuses; otherwise the status is the command's.
inline constexpr int kBadUsage = 1;
inline constexpr int kNotMet = 123;  // what a scenario expects
inline constexpr int kCannotSimulate = 125;
inline constexpr int kCannotRun = 126;
inline constexpr int kNotFound = 127;
// Added to the number of the signal that ended it, as shells do.
inline constexpr int kSignalled = 128;

// Tells the problem; the status.
int Fail(int status, const std::string& problem);

// Adds the command run. The result executes it once the command line has been parsed.
std::function<int()> AddRun(CLI::App& app);

}  // namespace tavlyn::sim
