// Waits that a device needs.
#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace tavlyn {

inline void Pause(std::uint32_t milliseconds) { platform::TheHost().clock.Sleep(milliseconds); }

}  // namespace tavlyn
