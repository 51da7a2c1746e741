// The whole program.
#pragma once

#include <functional>
#include <span>

namespace CLI {
class App;
}

namespace tavlyn::sim {

// What can be simulated, as --device takes it.
struct Kind {
  const char* word;
  const char* text;
};
std::span<const Kind> Kinds();

inline constexpr const char* kAbout = "Simulated devices for programs that use tavlynapi or hidapi";
// Adds every command. The result executes the one that was given.
std::function<int()> AddCommands(CLI::App& app);
int Main(int argc, char** argv);

}  // namespace tavlyn::sim
