// Which stored configuration of a plus reader the record calls act on. Only a plus reader has several.
#pragma once

#include <cstdint>

#include "core/openings.h"

namespace tavlyn {

inline std::uint16_t HighestConfig() {
  return PlusReaderIsActive() ? ActiveEntry().MaxConfig : std::uint16_t{0};
}

// On the host alone; the reader is told by its own command.
inline bool UseConfig(std::uint8_t index) {
  if (!PlusReaderIsActive() || index > ActiveEntry().MaxConfig) return false;
  ActiveEntry().ActConfig = index;
  return true;
}

}  // namespace tavlyn
