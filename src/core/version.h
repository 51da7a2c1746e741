// The library's version.
#pragma once

#include <cstdint>

namespace tavlyn {

inline constexpr std::uint16_t kVersionMajor = 7;
inline constexpr std::uint16_t kVersionMinor = 9;
inline constexpr std::uint16_t kVersionBuild = 2;

}  // namespace tavlyn
