// The version words of a magstripe reader or a sonar sensor, as GetFirmwareVersion numbers them.
#pragma once

#include <cstdint>

#include "core/state.h"

namespace tavlyn {

inline std::uint32_t VersionWord(std::uint16_t /*cpu*/, std::uint16_t index) {
  const tsDevEntry& entry = ActiveEntry();
  if (index == 0) return entry.DID;
  return index == 1 ? entry.DID2 : 0;
}

}  // namespace tavlyn
