// The commands that speak to a tavlynsim that serves.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace tavlyn::sim {

// Adds env, do, wait and stop. The result executes the one that was given.
std::function<int()> AddAsking(CLI::App& app);

}  // namespace tavlyn::sim
