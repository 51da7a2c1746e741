// What came of a scenario: for people, and for a CI system.
#pragma once

#include <string>
#include <vector>

#include "tools/tavlynsim/scenario/play.h"

namespace tavlyn::sim {

bool AreAllMet(const std::vector<Verdict>& verdicts);
// What was not met or done, and how much was.
std::vector<std::string> LinesOf(const std::string& path, const std::vector<Verdict>& verdicts);
// One test case for each.
std::string JunitText(const std::string& path, const std::vector<Verdict>& verdicts);

}  // namespace tavlyn::sim
