// The tools' command lines: what an argument must be, what every tool accepts, and what is wrong with a
// command line.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "tools/completion.h"

namespace tavlyn {

// What an argument must be. In decimal digits:
CLI::Validator WholeNumber(int least);
CLI::Validator WholeNumber(int least, int most);
// With or without a fraction, from 0.
CLI::Validator Seconds(int most);
CLI::Validator OneOf(const std::vector<std::string>& words);
// The words of an option that takes one of several; none for any other.
std::vector<std::string> ChoicesOf(CLI::Option& option);

// A command that every tool has; its own --help would add nothing.
inline constexpr const char* kHelp = "help";

// --version, and help with a command's words.
void AddCommonWords(CLI::App& app, const std::function<std::string()>& version);

// The command among the words; the program itself without one.
const CLI::App& Innermost(const CLI::App& app);
// Its words: "config set".
std::string GivenCommand(const CLI::App& app);

// The problem, and where to read more. With mayHoldKeys no argument is repeated.
std::string WrongWords(const CLI::App& app, const CLI::ParseError& error, bool mayHoldKeys = false);

// Of a tool whose mistakes are one line. The exit code, unless there is something to do: for help, for a
// shell that completes a word, and for wrong words, which are told.
std::optional<int> Parsed(CLI::App& app, int argc, char** argv, std::span<const Offer> offers, int badUsage);

}  // namespace tavlyn
