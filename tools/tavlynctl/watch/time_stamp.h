// When an event was.
#pragma once

#include <string>

namespace tavlyn::ctl {

// The time now as RFC 3339 has it, "2026-11-22T18:24:23.123Z".
std::string TimeStamp();

}  // namespace tavlyn::ctl
