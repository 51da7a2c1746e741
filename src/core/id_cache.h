// The ID of the last fetch on any device; one for the whole process.
#pragma once

#include <array>
#include <cstdint>

namespace tavlyn {

inline constexpr std::size_t kIdBytes = 32;

inline constinit std::array<std::uint8_t, kIdBytes> LastIDBytes{};
inline constinit std::uint32_t LastIDBits = 0;
inline constinit std::uint16_t LastIDLen = 0;  // what the last lower-case call asked for

}  // namespace tavlyn
