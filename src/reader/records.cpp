// Get and set of the records in the host's mirror: range checks, error words and dirty flags.
#include <algorithm>
#include <array>

#include "core/state.h"
#include "core/trace.h"
#include "reader/ascii.h"
#include "reader/layout.h"
#include "reader/outputs.h"
#include "reader/product.h"

namespace tavlyn::reader {
namespace {

using DirtyFlag = std::uint32_t tsCfgSlot::*;

struct RecordRow {
  const char* getTag;
  const char* setTag;
  DirtyFlag dirty;
  DirtyFlag alsoDirty;  // or null
};

// In the order of Record.
constexpr std::array<RecordRow, kRecordCount> kRecords = {{
    {"tavlyn_GetIDBitCnts", "tavlyn_SetIDBitCnts", &tsCfgSlot::bDirtyFmt, nullptr},
    {"tavlyn_GetFlags", "tavlyn_SetFlags", &tsCfgSlot::bDirtyFmt, nullptr},
    // iExOutputFormat travels in the extension block.
    {"tavlyn_GetIDDispParms", "tavlyn_SetIDDispParms", &tsCfgSlot::bDirtyFmt, &tsCfgSlot::bDirtyExt},
    {"tavlyn_GetTimeParms", "tavlyn_SetTimeParms", &tsCfgSlot::bDirtyTime, nullptr},
    {"tavlyn_GetFlags2", "tavlyn_SetFlags2", &tsCfgSlot::bDirtyDisp, nullptr},
    // bNotBootDev travels in the display block, which deliberately stays clean.
    {"tavlyn_GetFlags3", "tavlyn_SetFlags3", &tsCfgSlot::bDirtyTime, nullptr},
    {"tavlyn_GetIDDispParms2", "tavlyn_SetIDDispParms2", &tsCfgSlot::bDirtyDisp, nullptr},
    {"tavlyn_GetIDDispParms3", "tavlyn_SetIDDispParms3", &tsCfgSlot::bDirtyDisp, nullptr},
    {"tavlyn_GetLEDCtrl", "tavlyn_SetLEDCtrl", &tsCfgSlot::bDirtyDisp, nullptr},
    {"tavlyn_GetBprRlyCtrl", "tavlyn_SetBprRlyCtrl", &tsCfgSlot::bDirtyDisp, nullptr},
}};

// The error word for the first word that is out of range, or 0.
std::uint32_t RangeError(Record record, const std::int16_t* words, const tsCfgSlot& slot) {
  // Readers that speak text have other ranges and check them themselves.
  if (record == kIDBitCnts && shared.reader.AsciiProtocol != 0) return 0;
  return BoundsError(record, words, (slot[field::TimeParms_ExFeatures01] & kWideParity) != 0);
}

void Store(Record record, const std::int16_t* words, tsCfgSlot& slot) {
  const std::int16_t flags3Byte = slot[field::TimeParms_iTPCfgFlg3];
  std::copy_n(words, kRecordWords, slot.record[record].begin());
  if (record == kTimeParms) slot[field::TimeParms_iTPCfgFlg3] = flags3Byte;
  if (record == kCfgFlags3) slot[field::TimeParms_iTPCfgFlg3] = Flags3Byte(slot);
}

bool IsOutput(Record record) { return record == kLEDCtrl || record == kBprRlyCtrl; }

}  // namespace

std::uint32_t GetRecord(Record record, std::int16_t* words) {
  tsDevEntry& entry = EntryOfActDev();
  const char* tag = kRecords[record].getTag;
  entry.LastLibErr = TAVLYN_ERR_GET;
  if (words == nullptr) {
    entry.LastLibErr = TAVLYN_ERR_GET_NULL;
    // GetLEDCtrl alone deliberately does not log a null pointer.
    if (record != kLEDCtrl) LogFailure(tag);
    return 0;
  }
  if (entry.ActiveSlot().bCfgLoaded == 0) {
    entry.LastLibErr = TAVLYN_ERR_GET_UNREAD;
    LogFailure(tag);
    return 0;
  }
  std::ranges::copy(entry.ActiveSlot().record[record], words);
  entry.LastLibErr = 0;
  return 1;
}

std::uint32_t SetRecord(Record record, const std::int16_t* words) {
  tsDevEntry& entry = EntryOfActDev();
  const RecordRow& row = kRecords[record];
  entry.LastLibErr = TAVLYN_ERR_SET;
  if (words == nullptr) {
    entry.LastLibErr = TAVLYN_ERR_SET_NULL;
    LogFailure(row.setTag);
    return 0;
  }
  tsCfgSlot& slot = entry.ActiveSlot();
  if (const std::uint32_t error = RangeError(record, words, slot); error != 0) {
    entry.LastLibErr = error;
    return 0;
  }
  if (record == kLEDCtrl && words[field::LEDCtrl_bVolatile.word] != 0 && InAscii()) {
    // Sends what an earlier, stored set left in the slot; the caller's record is deliberately dropped.
    AsciiSetLeds();
    entry.LastLibErr = 0;
    return 1;
  }
  Store(record, words, slot);
  // A volatile output is sent at once and makes nothing dirty; whether it arrived does not matter.
  if (IsOutput(record) && words[field::LEDCtrl_bVolatile.word] != 0) {
    WriteDispBlock(slot);
  } else {
    slot.*row.dirty = 1;
    if (row.alsoDirty != nullptr) slot.*row.alsoDirty = 1;
  }
  entry.LastLibErr = 0;
  return 1;
}

}  // namespace tavlyn::reader
