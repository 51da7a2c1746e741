// Examples in --help, and what is shown to somebody who gives no command.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Whether a command has these words, or is below the one that has.
bool IsOrIsBelow(std::string_view command, std::string_view words);
// The first example of a command, or of one below it; empty if there is none.
std::string ExampleOf(const std::string& words);
// Shows an example under each heading of the commands.
std::shared_ptr<CLI::FormatterBase> HelpWithExamples();

// What is attached, as list finds it, and what to type next. It is no failure if there is nothing.
Json FirstSteps(const CLI::App& app, const std::function<Json()>& list);

}  // namespace tavlyn::ctl
