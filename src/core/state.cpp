#include "core/state.h"

#include <memory>

namespace tavlyn {
namespace {

// The last slot deliberately keeps a first byte of 0.
constexpr std::size_t kSlotsWithUnsetMark = 10;

void BlankEntry(tsDevEntry& entry) {
  entry = {};
  entry.hDev = platform::kNoHandle;
  entry.bSepFldCapable = 1;
  entry.bPartNumberPending = 1;
  entry.PlusState = kPlusUnknown;
  for (std::size_t slot = 0; slot < kSlotsWithUnsetMark; ++slot) {
    entry.CfgSlot[slot].sFldSepData[0] = kSepFldUnset;
  }
  entry.SorbaneBlock.Cfg.IdSel = kIdSelAtLoad;
}

}  // namespace

void DeviceTable::Reach(std::size_t count) {
  for (; reached_ < std::min(count, entries_.size()); ++reached_) BlankEntry(entries_[reached_]);
}

void DeviceTable::Reset() {
  reached_ = 0;
  Reach(1);
}

bool Activate(std::int16_t index) {
  if (shared.DevCnt == 0) shared.ActDev = 0;
  if (index < 0 || index >= shared.DevCnt) return false;
  shared.ActDev = index;
  return true;
}

void ResetState() {
  std::construct_at(&shared);
  DevTable.Reset();
}

}  // namespace tavlyn
