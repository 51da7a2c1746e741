// Beeper and LEDs of the active magnetic-stripe reader.
#pragma once

#include <cstdint>

namespace tavlyn {

std::uint32_t SorbaneBeep(std::uint8_t count, std::int16_t longBeep);

// Sends the colours of the mirror; they show at once.
std::uint32_t SorbaneShowLeds();

// tsLEDCtrl as this reader understands it.
std::uint32_t SorbaneGetLedCtrl(std::int16_t* words);
std::uint32_t SorbaneSetLedCtrl(const std::int16_t* words);

}  // namespace tavlyn
