#include "hid/hid_search.h"

#include <cstring>

namespace tavlyn {

tsDevEntry* NextHidEntry() {
  return shared.HidFoundCnt < kTableEntries ? &DevTable[shared.HidFoundCnt] : nullptr;
}

void CountHidEntry(tsDevEntry& entry, std::uint32_t kind, const char* path, std::int32_t row) {
  entry.VidPidRow = row;
  entry.ProductKind = kind;
  entry.LinkKind = kByReports;
  std::memset(entry.DevName, 0, sizeof entry.DevName);
  std::strncpy(entry.DevName, path, sizeof entry.DevName - 1);
  ++shared.HidFoundCnt;
  ++shared.DevCnt;
}

void SearchHidDevices(const UsbIdentity& identity, HidCallback add) {
  const std::int32_t foundBefore = shared.HidFoundCnt;
  EnumerateHid(identity, add);
  // Deliberately the entry after the first one added.
  const std::int32_t after = foundBefore + 1;
  if (shared.HidFoundCnt > foundBefore && after < kTableEntries)
    DevTable[after].LastLibErr = shared.SearchErr;
}

}  // namespace tavlyn
