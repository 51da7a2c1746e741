#include "tools/tavlynctl/secrets.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

namespace tavlyn::ctl {
namespace {

// The first words of commands.
constexpr std::string_view kWithKeys[] = {"secure", "keys", "ble", "raw", "serial"};
constexpr std::string_view kWordsMayBeKeys[] = {"secure", "raw", "serial write"};

// Either the words themselves or more of them.
bool BeginsWith(std::string_view command, std::string_view words) {
  return command.starts_with(words) && (command.size() == words.size() || command[words.size()] == ' ');
}

}  // namespace

bool HandlesKeys(std::string_view command) {
  return std::ranges::any_of(kWithKeys, [&](std::string_view one) { return BeginsWith(command, one); });
}

bool MayHoldKeys(std::string_view command) {
  return std::ranges::any_of(kWordsMayBeKeys, [&](std::string_view one) { return BeginsWith(command, one); });
}

std::string HiddenLine(const char* what) {
  const HiddenInput hidden;
  if (hidden.IsTyped()) std::fprintf(stderr, "%s is not shown while it is typed\n", what);
  std::string line;
  std::getline(std::cin, line);
  while (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

}  // namespace tavlyn::ctl
