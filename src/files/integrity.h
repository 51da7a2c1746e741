// Integrity trailers: the test before every load of a file with one, and configuration files with one.
#pragma once

#include <cstdint>

#include "files/crc.h"

namespace tavlyn {

inline constexpr std::uint32_t kHwgTrailer = 0;
inline constexpr std::uint32_t kIniTrailer = 2;

inline bool IsIntact(const char* path, std::uint32_t kind) { return CRC().CheckFile(path, kind) != 0; }
// The same test before a load; adds TAVLYN_ERR_INTEGRITY when the file fails.
bool PassesIntegrity(const char* path, std::uint32_t kind);

}  // namespace tavlyn
