// Reading and writing a device's configuration whatever its kind, under the lock: what connects, exports and
// files share.
#pragma once

#include <cstdint>

#include "core/locked.h"
#include "core/openings.h"
#include "core/trace.h"

namespace tavlyn {

// Both give 0 when no device is active, here deliberately not UnsupportedValue.
inline std::uint32_t ReadCfgLocked() {
  const Locked lock;
  return ActiveInRange() ? Dispatch(&Product::readCfg) : 0;
}

// Traced, because a write changes the device: a file load shows as one.
inline std::uint32_t WriteCfgLocked() {
  constexpr const char* kTag = "WriteCfg";
  LogLine(kTag, "ENTER");
  std::uint32_t result = 0;
  {
    const Locked lock;
    if (ActiveInRange()) result = Dispatch(&Product::writeCfg);
  }
  if (result != 0) LogLine(kTag, kSuccess);
  LogLine(kTag, "EXIT");
  return result;
}

}  // namespace tavlyn
