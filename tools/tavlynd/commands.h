// What a message on a command topic may ask for, a row for each command: the parser and docs/tavlynd.md
// derive from them.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tavlyn::agent {

struct Argument {
  const char* name;
  const char* meaning;
};

struct CommandKind {
  const char* name;
  std::span<const Argument> arguments;
  const char* meaning;
};

std::span<const CommandKind> CommandKinds();
// Null if there is none of that name.
const CommandKind* FindCommand(std::string_view name);
// "beep", "led" … or "re-read", in quotes.
std::string CommandNames();

}  // namespace tavlyn::agent
