// The text dialect of serial readers, for what it covers; everything else is still a frame. Keys and
// assignments are lines of text; a character is written as '\xHH'.
#pragma once

#include <cstdint>

namespace tavlyn::reader {

std::uint32_t AsciiReadConfig();
// Sends all fields every time: there is no commit, and answers are ignored.
std::uint32_t AsciiWriteConfig();
// Returns the card's bit count and puts the lowest eight bytes of its ID into the buffer.
std::uint16_t AsciiGetId(std::uint8_t* buffer, std::int16_t length);

void AsciiReset();
void AsciiBeep(std::uint8_t count, bool longBeep);
// Sends the LED states of the slot.
void AsciiSetLeds();

}  // namespace tavlyn::reader
