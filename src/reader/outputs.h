// LEDs, beeper, relay: the display block as a whole, and the beep command.
#pragma once

#include <cstdint>

#include "core/mirror.h"

namespace tavlyn {

// Sends block 2 at once, without a commit.
bool WriteDispBlock(tsCfgSlot& slot);

std::uint32_t Beep(std::uint8_t count, std::int16_t longBeep);

// A reader that knows the volume command stores a configuration in 20 ms instead of 1200 ms.
bool IsFastStoreReader();

}  // namespace tavlyn
