// Sending what has changed in the mirror, and the factory configuration.
#pragma once

#include <cstdint>

namespace tavlyn {

// Every configuration of the active reader; dirty flags decide which blocks go.
std::uint32_t WriteReaderCfg();

// Makes the reader load its factory configuration and reads it back.
std::uint32_t ResetReader();

}  // namespace tavlyn
