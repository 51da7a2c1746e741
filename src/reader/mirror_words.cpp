// Exports for words of the mirror that belong to no record.
#include <algorithm>
#include <span>

#include "api.h"
#include "core/openings.h"
#include "core/state.h"
#include "reader/product.h"

namespace tavlyn::reader {
namespace {

using SlotWord = std::int32_t tsCfgSlot::*;

std::uint32_t GetSlotWord(SlotWord word, std::uint32_t noReader) {
  if (!ReaderIsActive()) return noReader;
  return static_cast<std::uint32_t>(static_cast<std::int16_t>(EntryOfActDev().ActiveSlot().*word));
}

std::uint32_t SetSlotWord(SlotWord word, std::int32_t value, std::uint32_t noReader) {
  if (!ReaderIsActive()) return noReader;
  SetOption(word, value);
  return 1;
}

}  // namespace

void SetOption(std::int32_t tsCfgSlot::*option, std::int32_t value) {
  tsCfgSlot& slot = EntryOfActDev().ActiveSlot();
  slot.*option = value;
  slot.bDirtyExt = 1;
}

void SetSepData(std::span<const std::uint8_t, kSepFldBytes> bytes) {
  tsDevEntry& entry = EntryOfActDev();
  tsCfgSlot& slot = entry.ActiveSlot();
  std::ranges::copy(bytes, slot.sFldSepData.begin());
  slot.bDirtySep = 1;
  entry.LastLibErr = 0;
}

}  // namespace tavlyn::reader

using namespace tavlyn;
using namespace tavlyn::reader;

std::uint32_t GetSepFldData(std::uint8_t* buffer, std::uint16_t length) {
  if (!ReaderIsActive()) return shared.UnsupportedValue;
  if (length < kSepFldBytes) return 0;
  tsDevEntry& entry = EntryOfActDev();
  const tsCfgSlot& slot = entry.ActiveSlot();
  if (buffer == nullptr || slot.bCfgLoaded == 0) {
    entry.LastLibErr |= buffer == nullptr ? TAVLYN_ERR_SEP_NULL : TAVLYN_ERR_SEP_UNREAD;
    return 0;
  }
  std::ranges::copy(slot.sFldSepData, buffer);
  entry.LastLibErr = 0;
  return 1;
}

std::uint32_t SetSepFldData(const std::uint8_t* buffer, std::uint16_t length) {
  if (!ReaderIsActive()) return shared.UnsupportedValue;
  if (length < kSepFldBytes) return 0;
  if (buffer == nullptr) {
    EntryOfActDev().LastLibErr |= TAVLYN_ERR_SEP_NULL;
    return 0;
  }
  SetSepData(std::span<const std::uint8_t, kSepFldBytes>(buffer, kSepFldBytes));
  return 1;
}

std::uint32_t GetAZERTYShiftLock() {
  return GetSlotWord(&tsCfgSlot::AZERTYShiftlock, shared.UnsupportedValue);
}
std::uint32_t SetAZERTYShiftLock(std::int16_t on) {
  return SetSlotWord(&tsCfgSlot::AZERTYShiftlock, on, shared.UnsupportedValue);
}

std::uint32_t GetExtendedPrecisionMath() {
  return GetSlotWord(&tsCfgSlot::ExtendedPrecisionMath, shared.UnsupportedValue);
}
std::uint32_t SetExtendedPrecisionMath(std::int16_t on) {
  return SetSlotWord(&tsCfgSlot::ExtendedPrecisionMath, on, shared.UnsupportedValue);
}

std::uint32_t Get64BytesInPackets() { return GetSlotWord(&tsCfgSlot::b64BytesInPackets, 0); }
std::uint32_t Set64BytesInPackets(std::uint32_t on) {
  return SetSlotWord(&tsCfgSlot::b64BytesInPackets, static_cast<std::int32_t>(on), 0);
}

std::uint32_t GetEasyReadMode() { return GetSlotWord(&tsCfgSlot::bEasyReadMode, shared.UnsupportedValue); }
std::uint32_t SetEasyReadMode(std::uint32_t on) {
  return SetSlotWord(&tsCfgSlot::bEasyReadMode, static_cast<std::int32_t>(on), shared.UnsupportedValue);
}

std::uint32_t GetPrependCSN() { return GetSlotWord(&tsCfgSlot::bPrependCSN, shared.UnsupportedValue); }
std::uint32_t SetPrependCSN(std::uint32_t on) {
  return SetSlotWord(&tsCfgSlot::bPrependCSN, static_cast<std::int32_t>(on), shared.UnsupportedValue);
}
