// What is wrong with the words of a command line.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace tavlyn {

// A command of every tool, whose own help tells nothing more.
inline constexpr const char* kHelp = "help";

// The commands among the words: "config set".
std::string GivenCommand(const CLI::App& app);

// "there is no command lsit; did you mean list?", of the commands below one or the program.
std::string NoCommand(const CLI::App& app, const std::string& word);

// The problem, and where to read more. With mayHoldKeys no word of the line is repeated.
std::string WrongWords(const CLI::App& app, const CLI::ParseError& error, bool mayHoldKeys = false);

}  // namespace tavlyn
