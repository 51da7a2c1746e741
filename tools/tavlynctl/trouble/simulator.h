// tavlynsim, which records devices and plays them back, in the place of this program.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Returns only when it cannot be run.
Failure RunSimulator(const std::vector<std::string>& words);

// The words by which it runs this command line on a recording; none unless an argument is --device
// replay:FILE.
std::vector<std::string> WordsForReplay(std::span<char* const> arguments);

}  // namespace tavlyn::ctl
