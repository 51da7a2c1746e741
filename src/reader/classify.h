// Plain or plus: which kind of card reader the active device is, and the configuration it works with.
#pragma once

#include <cstdint>

namespace tavlyn {

// True for a plus reader. Sets PlusState, MaxConfig, ActConfig and the card type of the active slot. A reader
// once known as plain is not asked again until its entry is rebuilt.
bool ClassifyReader();

// Tells a plus reader to use configuration n. ActConfig becomes n before the reader has agreed.
bool SelectConfig(std::uint8_t n);

// The reader answers at all.
bool PingReader();

}  // namespace tavlyn
