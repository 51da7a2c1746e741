// Sleeps that take no time: what this process sleeps is added to its clock instead, and pauses of up to a
// minute cost nothing.
#pragma once

#include <chrono>

namespace tavlyn::boundary {

// For a library that has just been loaded.
void TakeItsTime();

// On Linux: from now on no wait is real, because this lets everybody answer who is to. Null ends it.
void AnswerInWaits(void (*answer)());

// This program's own sleep.
void PassQuickly(std::chrono::milliseconds length);

}  // namespace tavlyn::boundary
