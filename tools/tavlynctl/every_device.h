// A command that is done with one device, or with all that are found.
#pragma once

#include <cstdint>
#include <functional>

#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {

// Uses the device that was chosen, and returns what `one` returns for it: the command's document, with the
// active device. With --all each device of these products in turn: returns a list of results, or throws
// Failure with the list and the highest exit code.
Json ForEachChosen(const Request& request, std::uint32_t products, const std::function<Json()>& one);

}  // namespace tavlyn::ctl
