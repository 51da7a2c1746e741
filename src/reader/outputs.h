// LEDs, beeper, relay: the display block as a whole, and the beep command.
#pragma once

#include "core/mirror.h"
#include "reader/exchange.h"

namespace tavlyn::reader {

// Sends block 2 at once, without a commit.
bool WriteDispBlock(tsCfgSlot& slot);

// A blank reply comes from readers without the command. The report ID counts, so a reader with report ID 1
// always has it.
Outcome AskVolume();

}  // namespace tavlyn::reader
