// The command that only looks at scenario files.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace tavlyn::sim {

// Adds the command check. The result executes it once the command line has been parsed.
std::function<int()> AddCheck(CLI::App& app);

}  // namespace tavlyn::sim
