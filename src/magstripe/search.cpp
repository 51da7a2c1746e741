#include "magstripe/search.h"

#include <algorithm>

#include "api.h"
#include "core/state.h"
#include "hid/hid_search.h"
#include "links/com_search.h"
#include "magstripe/transactions.h"

namespace tavlyn {
namespace {

bool IsOpened(const tsDevEntry& entry) { return entry.SorbaneBlock.bOpened != 0; }

bool OneIsOpened() { return std::ranges::any_of(LiveEntries(), IsOpened); }

void SorbaneAddDevice(const char* path, std::int32_t row) {
  tsDevEntry* entry = NextHidEntry();
  if (entry == nullptr) return;
  entry->SorbaneBlock.bOpened = 1;
  entry->hDev = OpenDevice(path);
  CountHidEntry(*entry, kMagstripe, path, row);
}

}  // namespace

bool SearchMagstripes() {
  SearchErr = 0;
  if (OneIsOpened()) {
    SearchErr = TAVLYN_ERR_CONNECT;
    return false;
  }
  const std::int16_t start = DevCnt;
  if (Searches(0)) SearchHidPair(kMagstripePair, SorbaneAddDevice);
  if (DevCnt != start) return true;
  if (!Searches(1)) return false;
  if (!SearchMagstripePorts()) {
    SearchErr |= TAVLYN_ERR_CONNECT;
    return false;
  }
  return DevCnt != start;
}

bool SearchMagstripePorts() { return SearchSorbaneComs(SorbanePing); }

}  // namespace tavlyn
