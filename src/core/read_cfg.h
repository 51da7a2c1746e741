// Reading a device's configuration whatever its kind, under the lock: what connects, ReadCfg and the file
// loads share.
#pragma once

#include <cstdint>

#include "core/locked.h"
#include "core/openings.h"

namespace tavlyn {

// 0 when no device is active, here deliberately not UnsupportedValue.
inline std::uint32_t ReadCfgLocked() {
  const Locked lock;
  return ActiveInRange() ? Dispatch(&Product::readCfg) : 0;
}

}  // namespace tavlyn
