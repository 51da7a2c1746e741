// The command line.
#pragma once

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace tavlyn::agent {

inline constexpr const char* kAbout =
    "Publishes cards, swipes and presence at this machine's devices to an MQTT broker, and carries out its "
    "commands";

struct CommandLine {
  std::string settings;
  bool check = false;
};

void AddWords(CLI::App& app, CommandLine& line);

enum ExitCode : int { kEnded = 0, kBadUsage = 1, kBadSettings = 2, kCannotRun = 3 };

int Main(int argc, char** argv);

}  // namespace tavlyn::agent
