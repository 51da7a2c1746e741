// What applications may ask of the VID/PID table. The library itself does not use the filters.
#include <cstring>

#include "api.h"
#include "core/openings.h"
#include "hid/vidpid_table.h"

namespace tavlyn {
namespace {

constexpr const char* kMainPairName = "7A31:3BFA Orvantis";

// The active device's row of the table, or null.
const tsVidPidRow* ActiveRow() {
  const std::int32_t row = EntryOfActDev().VidPidRow;
  return row >= 0 && row < kVidPidRows ? &VidPidTable[static_cast<std::size_t>(row)] : nullptr;
}

std::uint32_t FilterValue(std::int32_t index, std::uint32_t Filter::*value) {
  if (index != 0 && index != 1) return 0;
  const auto number = static_cast<std::size_t>(index);
  const tsVidPidRow* row = ReaderIsActive() && index == 1 ? ActiveRow() : nullptr;
  return row != nullptr ? row->filter[number].*value : DefaultFilter[number].*value;
}

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

std::uint32_t GetVidPidFilterMask(std::int32_t index) { return FilterValue(index, &Filter::mask); }
std::uint32_t GetVidPidFilterCompare(std::int32_t index) { return FilterValue(index, &Filter::compare); }

const char* GetVidPidVendorName() {
  if (!ActiveInRange()) return kMainPairName;
  const tsDevEntry& entry = EntryOfActDev();
  if (TunnelLink != 0 || entry.LinkKind == 1 || entry.LinkKind == 2) return "";
  if (entry.ProductKind != kReader) return "";
  const tsVidPidRow* row = ActiveRow();
  return row != nullptr ? row->VendorName : kMainPairName;
}

std::uint8_t getVidPidVendorName_char(std::int16_t index) {
  const char* name = GetVidPidVendorName();
  if (index < 0 || static_cast<std::size_t>(index) >= std::strlen(name)) return 0;
  return static_cast<std::uint8_t>(name[index]);
}
