// What reading and writing a configuration share with other rooms.
#pragma once

#include <cstdint>

namespace tavlyn::reader {

// Tells a plus reader to use configuration n. ActConfig becomes n before the reader has agreed.
bool SelectConfig(std::uint8_t n);

// A reader that knows the volume command stores a configuration in 20 ms instead of 1200 ms.
bool IsFastStoreReader();

}  // namespace tavlyn::reader
