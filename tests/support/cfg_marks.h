// The marks by which a configuration write goes, and what the write sends after its commit.
#pragma once

#include <cstdint>
#include <string>

#include "core/state.h"
#include "tests/support/traffic.h"

namespace tavlyn::test {

// Bits of the commit mask.
enum Mark : unsigned {
  kMarkFmt = 0x01,
  kMarkTime = 0x02,
  kMarkDisp = 0x04,
  kMarkExt = 0x08,
  kMarkSep = 0x20,
  kMarkLuid = 0x80,
  kAllMarks = 0xAF,
};

inline void SetMarks(tsDevEntry& entry, unsigned marks) {
  tsCfgSlot& slot = entry.ActiveSlot();
  const auto flag = [marks](Mark mark) { return (marks & mark) != 0 ? 1U : 0U; };
  slot.bDirtyFmt = flag(kMarkFmt);
  slot.bDirtyTime = flag(kMarkTime);
  slot.bDirtyDisp = flag(kMarkDisp);
  slot.bDirtyExt = flag(kMarkExt);
  slot.bDirtySep = flag(kMarkSep);
  entry.bLUIDDirty = flag(kMarkLuid);
}

inline unsigned MarksOf(const tsDevEntry& entry, const tsCfgSlot& slot) {
  return (slot.bDirtyFmt != 0 ? kMarkFmt : 0U) | (slot.bDirtyTime != 0 ? kMarkTime : 0U) |
         (slot.bDirtyDisp != 0 ? kMarkDisp : 0U) | (slot.bDirtyExt != 0 ? kMarkExt : 0U) |
         (slot.bDirtySep != 0 ? kMarkSep : 0U) | (entry.bLUIDDirty != 0 ? kMarkLuid : 0U);
}

// The store query over reports, and the wait it leads to.
inline Lines FastStore() { return {"set 8C 06", "get", "sleep 20"}; }
inline Lines SlowStore() { return {"set 8C 06", "get", "sleep 1200"}; }

// A report that keeps failing.
inline Lines Refused(const std::string& report) {
  return Times(6, {"set " + report + " refused", "sleep 80"});
}

}  // namespace tavlyn::test
