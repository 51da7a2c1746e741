// Reading, writing and resetting the stored configuration of the active magnetic-stripe reader.
#pragma once

#include <cstdint>

namespace tavlyn {

std::uint32_t SorbaneReadCfg();
// An abandoned write is not told to the reader.
std::uint32_t SorbaneWriteCfg();
// To factory defaults, which are then read.
std::uint32_t SorbaneReset();

}  // namespace tavlyn
