// Reading a reader's stored configuration into the mirror.
#pragma once

#include <cstdint>

namespace tavlyn {

// Every configuration, from the highest to the lowest, and the card type list of a plus reader.
std::uint32_t ReadReaderCfg();

}  // namespace tavlyn
