// The command that has simulated devices for programs started elsewhere.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace tavlyn::sim {

// Adds the command serve. The result executes it once the command line has been parsed.
std::function<int()> AddServe(CLI::App& app);

}  // namespace tavlyn::sim
