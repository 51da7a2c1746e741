// The test that stands before every load of a file with a trailer.
#pragma once

#include <cstdint>
#include <memory>

#include "files/crc.h"
#include "platform/guarded.h"

namespace tavlyn {

inline constexpr std::uint32_t kHwgTrailer = 0;
inline constexpr std::uint32_t kIniTrailer = 2;

// A file too large for the memory counts as damaged.
inline bool IsIntact(const char* path, std::uint32_t kind) {
  return Guarded(false, [&] { return std::make_unique<CRC>()->CheckFile(path, kind) != 0; });
}

}  // namespace tavlyn
