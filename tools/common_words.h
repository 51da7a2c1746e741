// What every tool takes: --version, and help with the words of a command.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>

namespace tavlyn {

void AddCommonWords(CLI::App& app, const std::function<std::string()>& version);

}  // namespace tavlyn
