#include "magstripe/time_parms.h"

#include <algorithm>

#include "api.h"
#include "core/state.h"

namespace tavlyn {

std::uint32_t SorbaneGetTimeParms(std::int16_t* words) {
  tsDevEntry& entry = EntryOfActDev();
  if (words == nullptr) {
    entry.LastLibErr = TAVLYN_ERR_GET_NULL;
    return 0;
  }
  std::ranges::copy(entry.CfgSlot[0].record[kTimeParms], words);
  entry.LastLibErr = 0;
  return 1;
}

std::uint32_t SorbaneSetTimeParms(const std::int16_t* words) {
  tsDevEntry& entry = EntryOfActDev();
  entry.LastLibErr = words == nullptr ? TAVLYN_ERR_SET_NULL : BoundsError(kTimeParms, words);
  if (entry.LastLibErr != 0) return 0;
  tsCfgSlot& slot = entry.CfgSlot[0];
  // The last word is the flags byte and stays.
  std::copy_n(words, kRecordWords - 1, slot.record[kTimeParms].begin());
  slot.bDirtyTime = 1;
  return 1;
}

std::uint16_t* SorbaneKeyTime(KeyTime which) {
  tsSorbaneCfg& cfg = EntryOfActDev().SorbaneBlock.Cfg;
  return which == KeyTime::kPress ? &cfg.KeyPressTime : &cfg.KeyReleaseTime;
}

}  // namespace tavlyn
