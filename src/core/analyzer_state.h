// What all devices share of the card analyzer.
#pragma once

#include <cstdint>

namespace tavlyn {

inline constinit std::int32_t AnalyzerStatus = -1;  // -1: the last query failed
inline constinit std::uint8_t AnalyzerCount = 0;    // of the last good query, on whichever device

}  // namespace tavlyn
