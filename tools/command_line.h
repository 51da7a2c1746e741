// The command lines of the tools: what a word must be, what every tool takes, and what is wrong with the
// words.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace tavlyn {

// What a word must be. In decimal digits:
CLI::Validator WholeNumber(int least);
CLI::Validator WholeNumber(int least, int most);
// With a fraction or without, from 0.
CLI::Validator Seconds(int most);
CLI::Validator OneOf(const std::vector<std::string>& words);

// --version, and help with the words of a command.
void AddCommonWords(CLI::App& app, const std::function<std::string()>& version);

// The commands among the words: "config set".
std::string GivenCommand(const CLI::App& app);

// The problem, and where to read more. With mayHoldKeys no word of the line is repeated.
std::string WrongWords(const CLI::App& app, const CLI::ParseError& error, bool mayHoldKeys = false);

}  // namespace tavlyn
