#include "tools/tavlynd/commands.h"

#include <algorithm>

namespace tavlyn::agent {
namespace {

constexpr Argument kBeepArguments[] = {
    {"count", "beeps, 1 to 5 (1)"},
    {"long", "true for long beeps, of which a device makes 1 or 2"},
};
constexpr Argument kLedArguments[] = {
    {"colours", R"(["red"], ["green"], both; ["off"]; ["auto"]: as the reader itself does)"},
};
constexpr Argument kRelayArguments[] = {{"on", "true or false"}};
constexpr Argument kLoadArguments[] = {
    {"file", "the text of the file"},
    {"dry", "true: only say what would change"},
    {"strict", "true: refuse a file with a line that means nothing"},
};

constexpr CommandKind kCommands[] = {
    {"beep", kBeepArguments, "beeps"},
    {"led", kLedArguments, "switches the LEDs, until the device loses power"},
    {"relay", kRelayArguments, "switches the relay, until the device loses power"},
    {"read-card", {}, "says which card lies there"},
    {"read-config", {}, "says how the device is configured"},
    {"load-config", kLoadArguments,
     "tests a configuration file, loads it, reads it back and says what has changed"},
    {"re-read", {}, "reads the configuration from the device again"},
};

}  // namespace

std::span<const CommandKind> CommandKinds() { return kCommands; }

const CommandKind* FindCommand(std::string_view name) {
  const auto found =
      std::ranges::find(kCommands, name, [](const CommandKind& one) { return std::string_view(one.name); });
  return found == std::end(kCommands) ? nullptr : found;
}

std::string CommandNames() {
  std::string names;
  for (const CommandKind& one : kCommands) {
    const char* before = &one == std::end(kCommands) - 1 ? " or \"" : ", \"";
    names.append(names.empty() ? "\"" : before).append(one.name).append("\"");
  }
  return names;
}

}  // namespace tavlyn::agent
