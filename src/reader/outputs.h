// Outputs: the display block, which sets LEDs, beeper and relay, and the beeper's volume.
#pragma once

#include "core/mirror.h"
#include "reader/exchange.h"

namespace tavlyn::reader {

// Sends the display block at once, without a commit.
bool WriteDispBlock(tsCfgSlot& slot);

// Readers without the command send a blank reply. Since the report ID counts, a reader with report ID 1
// always seems to have it.
Outcome AskVolume();

}  // namespace tavlyn::reader
