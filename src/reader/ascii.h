// The text dialect of serial readers that speak no FA frames. Keys and assignments are lines of text; a
// character goes out as '\xHH'.
#pragma once

#include <cstdint>

namespace tavlyn::reader {

std::uint32_t AsciiReadConfig();
// No commit and no answer is looked at: all fields go out each time.
std::uint32_t AsciiWriteConfig();
// Bit count of the card, its lowest eight bytes in the buffer.
std::uint16_t AsciiGetId(std::uint8_t* buffer, std::int16_t length);

void AsciiReset();
void AsciiBeep(std::uint8_t count, bool longBeep);
// The LED states of the slot.
void AsciiSetLeds();

}  // namespace tavlyn::reader
