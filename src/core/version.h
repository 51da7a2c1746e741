// The version of the library, and the version words of devices that have only two.
#pragma once

#include <cstdint>

#include "core/state.h"

namespace tavlyn {

inline constexpr std::uint16_t kVersionMajor = 7;
inline constexpr std::uint16_t kVersionMinor = 9;
inline constexpr std::uint16_t kVersionBuild = 2;

// For a magstripe reader or a sonar sensor. The index is that of GetFirmwareVersion.
inline std::uint32_t VersionWord(std::uint16_t /*cpu*/, std::uint16_t index) {
  const tsDevEntry& entry = EntryOfActDev();
  if (index == 0) return entry.DID;
  return index == 1 ? entry.DID2 : 0;
}

}  // namespace tavlyn
