// What is wrong with the words of a command line.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace tavlyn {

// The commands among the words: "config set".
std::string GivenCommand(const CLI::App& app);

// The problem, and where to read more. With mayHoldKeys no word of the line is repeated.
std::string WrongWords(const CLI::App& app, const CLI::ParseError& error, bool mayHoldKeys = false);

}  // namespace tavlyn
