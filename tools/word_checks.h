// What a word of the command line must be, and how it is refused.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tavlyn {

// In decimal digits.
CLI::Validator WholeNumber(int least);
CLI::Validator WholeNumber(int least, int most);

// With a fraction or without, from 0.
CLI::Validator Seconds(int most);

CLI::Validator OneOf(const std::vector<std::string>& words);

}  // namespace tavlyn
