// How fast time goes, for tavlynsim and for the programs that it starts.
#pragma once

#include <string>

#include "tools/tavlynsim/environment.h"

namespace tavlyn::sim {

// Empty for a speed: 1 to 1000, or max.
std::string SpeedProblem(const std::string& speed);

// With another speed than that of the machine this program becomes itself again, on a clock of that speed; so
// it returns only then, or with the problem.
std::string TakeSpeed(const std::string& speed);
// By what other programs get that clock.
void AddClock(const std::string& speed, Variables& variables);
// Whoever had that clock has ended.
void LeaveClock(const std::string& speed);

}  // namespace tavlyn::sim
