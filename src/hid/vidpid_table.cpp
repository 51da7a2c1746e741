#include "hid/vidpid_table.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "api.h"
#include "core/openings.h"
#include "core/text.h"
#include "platform/files.h"
#include "platform/path.h"

namespace tavlyn {
namespace {

constexpr std::size_t kLineLength = 256;
constexpr std::size_t kValueLength = 81;
constexpr const char* kFileName = "./TavlynVIDPID.txt";

// Written as lines of the file.
#define TAVLYN_ROW(vid, pid, vendor, filter)                                                             \
  "VID=\"" #vid "\" PID=\"" #pid "\" VENDORNAME=\"" #vid ":" #pid " " vendor "\" FILTER1MASK=\"" #filter \
  "\" FILTER1COMPARE=\"" #filter "\"",
constexpr std::array kBuiltInLines = {
    R"(DEFAULT1MASK="8000"  DEFAULT1COMPARE="8000")",
#include "hid/identities.inc"
};

// The quoted text after the first occurrence of key on the line, cut to length; empty unless it has both
// quotes.
std::string_view QuotedValue(const char* line, std::string_view key, std::size_t length) {
  const char* at = std::strstr(line, key.data());
  if (at == nullptr || at[key.size()] != '"') return {};
  const char* value = at + key.size() + 1;
  const char* end = std::strchr(value, '"');
  if (end == nullptr) return {};
  return {value, std::min(static_cast<std::size_t>(end - value), length)};
}

// At most four hexadecimal digits; a value that does not parse leaves target as it was.
template <typename Word>
void TakeHex(const char* line, std::string_view key, Word& target) {
  const std::string_view quoted = QuotedValue(line, key, kValueLength);
  if (quoted.empty()) return;
  char value[kValueLength + 1] = {};
  quoted.copy(value, kValueLength);
  unsigned long number = 0;
  if (std::sscanf(value, "%4lX", &number) == 1) target = static_cast<Word>(number);
}

File OpenTable() {
  File file(platform::OpenFoundFile(kFileName));
  if (file != nullptr) {
    const platform::Path found("%s%s", platform::TheHost().places.CurrentFolder().c_str(), kFileName + 2);
    shared.vidPid.path.fill('\0');
    found.View().copy(shared.vidPid.path.data(), shared.vidPid.path.size() - 1);
    return file;
  }
  if (shared.vidPid.path.front() != '\0') file.reset(platform::OpenFoundFile(shared.vidPid.path.data()));
  return file;
}

}  // namespace

void LoadVidPidTable() {
  shared.vidPid.VidPidTable.fill({});
  const File file = OpenTable();
  if (file == nullptr) {
    for (const char* line : kBuiltInLines) ParseVidPidLine(line);
    return;
  }
  // The lock is held, and the file may be hostile: even a regular one is read only up to a bound.
  Lines<kLineLength + 1> lines(file.get(), kMostPieces);
  std::string_view line;
  while (shared.vidPid.VidPidCnt < kVidPidRows && lines.Next(line)) ParseVidPidLine(line.data());
}

void ParseVidPidLine(const char* text) {
  if (shared.vidPid.VidPidCnt >= kVidPidRows) return;
  tsVidPidRow& row = VidPidRowAt(shared.vidPid.VidPidCnt);
  std::uint16_t vid = 0;
  std::uint16_t pid = 0;
  TakeHex(text, "DEFAULT1MASK=", shared.vidPid.DefaultFilter[1].mask);
  TakeHex(text, "DEFAULT1COMPARE=", shared.vidPid.DefaultFilter[1].compare);
  TakeHex(text, "VID=", vid);
  TakeHex(text, "PID=", pid);
  // These go into the free row even when the line turns out to add none.
  TakeHex(text, "FILTER1MASK=", row.filter[1].mask);
  TakeHex(text, "FILTER1COMPARE=", row.filter[1].compare);
  const std::string_view name = QuotedValue(text, "VENDORNAME=", kVendorNameLength);
  if (name.empty() || vid == 0 || pid == 0) return;
  row.VID = vid;
  row.PID = pid;
  std::memset(row.VendorName, 0, sizeof row.VendorName);
  name.copy(row.VendorName, kVendorNameLength);
  ++shared.vidPid.VidPidCnt;
}

std::int32_t FindVidPidRow(platform::HidIds ids, std::int32_t start) {
  if (ids.pid == 0) return -1;
  for (std::int32_t row = start; row < kVidPidRows; ++row) {
    const tsVidPidRow& candidate = VidPidRowAt(row);
    if (candidate.VID == 0) return -1;
    if (candidate.VID == ids.vid && candidate.PID == ids.pid) return row;
  }
  return -1;
}

}  // namespace tavlyn

using namespace tavlyn;

namespace {

// For a device without a row of its own.
constexpr const char* kUnlistedName = "7A31:3BFA Orvantis";

bool TableCounts() {
  const Product* product = ActiveProduct();
  return product != nullptr && product->usb.byVidPidTable;
}

// The active device's row of the table, or null.
const tsVidPidRow* ActiveRow() {
  const std::int32_t row = EntryOfActDev().VidPidRow;
  return row >= 0 && row < kVidPidRows ? &VidPidRowAt(row) : nullptr;
}

std::uint32_t FilterValue(std::int32_t index, std::uint32_t Filter::*value) {
  if (index != 0 && index != 1) return 0;
  const auto number = static_cast<std::size_t>(index);
  const tsVidPidRow* row = TableCounts() && index == 1 ? ActiveRow() : nullptr;
  return row != nullptr ? row->filter[number].*value : shared.vidPid.DefaultFilter[number].*value;
}

}  // namespace

// The library itself does not use the filters.
std::uint32_t GetVidPidFilterMask(std::int32_t index) { return FilterValue(index, &Filter::mask); }
std::uint32_t GetVidPidFilterCompare(std::int32_t index) { return FilterValue(index, &Filter::compare); }

const char* GetVidPidVendorName() {
  if (!ActiveInRange()) return kUnlistedName;
  const tsDevEntry& entry = EntryOfActDev();
  if (shared.link.TunnelLink != 0 || entry.LinkKind != kByReports) return "";
  if (!TableCounts()) return "";
  const tsVidPidRow* row = ActiveRow();
  return row != nullptr ? row->VendorName : kUnlistedName;
}

std::uint8_t getVidPidVendorName_char(std::int16_t index) {
  const char* name = GetVidPidVendorName();
  if (index < 0 || static_cast<std::size_t>(index) >= std::strlen(name)) return 0;
  return static_cast<std::uint8_t>(name[index]);
}
