// The lines and variables that a user's format or command gets of an event.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// "{time}, {sequence}, …".
std::string Placeholders();
// What is wrong with a format; empty if nothing is.
std::string FormatProblem(const std::string& format);
// Whether the format shows this event: one that does not say which event it is shows only cards that come.
bool FormatShows(const std::string& format, const std::string& event);
// With the event's values in place of the placeholders.
std::string Formatted(const std::string& format, const Json& event);

using EventVariables = std::vector<std::pair<std::string, std::string>>;
// Those that the event does not have are empty.
EventVariables VariablesOf(const Json& event);

}  // namespace tavlyn::ctl
