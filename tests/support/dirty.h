// What of a configuration is dirty, by which a write goes, and what the write sends after its commit.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "core/state.h"
#include "tests/support/traffic.h"

namespace tavlyn::test {

// Bits of the commit mask.
enum DirtyBit : unsigned {
  kDirtyFmt = 0x01,
  kDirtyTime = 0x02,
  kDirtyDisp = 0x04,
  kDirtyExt = 0x08,
  kDirtySep = 0x20,
  kDirtyLuid = 0x80,
  kAllDirty = 0xAF,
};

inline void SetDirty(tsDevEntry& entry, unsigned dirty) {
  tsCfgSlot& slot = entry.ActiveSlot();
  const auto flag = [dirty](DirtyBit bit) { return (dirty & bit) != 0 ? 1U : 0U; };
  slot.bDirtyFmt = flag(kDirtyFmt);
  slot.bDirtyTime = flag(kDirtyTime);
  slot.bDirtyDisp = flag(kDirtyDisp);
  slot.bDirtyExt = flag(kDirtyExt);
  slot.bDirtySep = flag(kDirtySep);
  entry.bLUIDDirty = flag(kDirtyLuid);
}

inline unsigned DirtyOf(const tsDevEntry& entry, const tsCfgSlot& slot) {
  return (slot.bDirtyFmt != 0 ? kDirtyFmt : 0U) | (slot.bDirtyTime != 0 ? kDirtyTime : 0U) |
         (slot.bDirtyDisp != 0 ? kDirtyDisp : 0U) | (slot.bDirtyExt != 0 ? kDirtyExt : 0U) |
         (slot.bDirtySep != 0 ? kDirtySep : 0U) | (entry.bLUIDDirty != 0 ? kDirtyLuid : 0U);
}

// What a write sends for one dirty part.
struct DirtyPart {
  DirtyBit bit;
  Lines lines;
};

// Every combination of the parts, with what a write sends for it.
template <typename Check>
void ForEachCombination(const std::vector<DirtyPart>& parts, Check check) {
  for (unsigned chosen = 0; chosen < 1U << parts.size(); ++chosen) {
    unsigned mask = 0;
    Lines lines;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      if ((chosen >> i & 1) == 0) continue;
      mask |= parts[i].bit;
      lines = Join({lines, parts[i].lines});
    }
    SCOPED_TRACE(mask);
    check(mask, lines);
  }
}

// The store query over reports, and the wait it leads to.
inline Lines FastStore() { return {"set 8C 06", "get", "sleep 20"}; }
inline Lines SlowStore() { return {"set 8C 06", "get", "sleep 1200"}; }

// A report that keeps failing.
inline Lines Refused(const std::string& report) {
  return Times(6, {"set " + report + " refused", "sleep 80"});
}

}  // namespace tavlyn::test
