// The tools' own definitions of their commands, as the pages need them.
#pragma once

#include <string>
#include <vector>

namespace tavlyn::manual {

// An option, or a value that a command takes.
struct Word {
  std::string name;   // "--config", "FIELD"
  std::string value;  // of an option: "N"; empty for a flag
  std::string text;
  bool required = false;
  bool several = false;
};

struct Command {
  std::string words;  // "config set"
  std::string text;
  std::string page;           // of tavlynctl: "config", for tavlynctl-config(1)
  std::vector<Word> options;  // its own
  std::vector<Word> values;
};

// What is told of all commands of tavlynctl at once.
inline constexpr const char* kHelpOption = "--help";
inline constexpr const char* kJsonOption = "--json";

struct Tool {
  std::string name;
  std::vector<Word> options;  // of the program
  std::vector<Word> values;
  std::vector<Command> commands;
};

const Tool& Tavlynctl();
const Tool& Tavlynsim();
const Tool& Tavlynd();

}  // namespace tavlyn::manual
