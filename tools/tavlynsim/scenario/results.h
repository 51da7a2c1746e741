// What came of a scenario: for people, and for a CI system.
#pragma once

#include <string>
#include <vector>

#include "tools/tavlynsim/scenario/play.h"

namespace tavlyn::sim {

// Tells on standard error what was not met, and how many were; how many were not.
int TellVerdicts(const std::string& path, const std::vector<Verdict>& verdicts);
// One test case for each expectation.
std::string JunitText(const std::string& path, const std::vector<Verdict>& verdicts);

}  // namespace tavlyn::sim
