// What other files use of reading and writing configurations.
#pragma once

#include <cstdint>

namespace tavlyn::reader {

// Makes a plus reader use configuration n. ActConfig becomes n whether or not the reader agrees.
bool SelectConfig(std::uint8_t n);

// Whether the reader stores a configuration in 20 ms instead of 1200 ms, as those with the volume command do.
bool IsFastStoreReader();

}  // namespace tavlyn::reader
