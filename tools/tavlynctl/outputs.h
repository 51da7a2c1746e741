// What a device shows and sounds: of the active device. Each adds to the command's document what was done;
// throws Failure.
#pragma once

#include <string>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

inline constexpr int kMostBeeps = 5;
inline constexpr int kMostLongBeeps = 2;

// count 0: one.
Json MakeBeep(Json document, int count, bool isLong);
// red, green or both; off or auto alone. store: for good.
Json SwitchLeds(Json document, const std::vector<std::string>& colours, bool store);
Json SwitchRelay(Json document, bool on, bool store);

}  // namespace tavlyn::ctl
