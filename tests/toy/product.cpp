// The smallest possible family. It shows what another product needs: a folder like this and a row of
// core/products.inc.
#include "core/product.h"

#include <algorithm>

#include "core/state.h"
#include "hid/hid_search.h"
#include "hid/report_channel.h"

namespace tavlyn {
namespace toy {
namespace {

constexpr UsbIdentity kUsbIdentity{kToyPair};

void AddToy(const char* path, std::int32_t row) {
  tsDevEntry* entry = NextHidEntry();
  if (entry == nullptr) return;
  entry->hDev = OpenDevice(path);
  CountHidEntry(*entry, kToy, path, row);
}

bool Search() {
  const std::int16_t start = shared.DevCnt;
  if (SearchAllows(kUsb)) SearchHidDevices(kUsbIdentity, AddToy);
  return shared.DevCnt != start;
}

std::uint32_t ReadCfg() {
  Report reply{};
  if (!SendReport({0, 'C'}) || !FetchReport(reply)) return 0;
  EntryOfActDev().DID = reply[1];
  return 1;
}

// The reply: bits, then the bytes.
std::uint16_t FetchId(std::uint8_t* buffer, std::int16_t length) {
  Report reply{};
  if (!SendReport({0, 'I'}) || !FetchReport(reply)) return 0;
  std::copy_n(reply.begin() + 2, std::min<std::ptrdiff_t>(length, 7), buffer);
  return reply[1];
}

std::uint32_t Beep(std::uint8_t count, std::int16_t longBeep) {
  return SendReport({0, 'B', count, static_cast<std::uint8_t>(longBeep)}) ? 1 : 0;
}

}  // namespace
}  // namespace toy

constexpr Product kToyProduct = {
    .kind = kToy,
    .usb = toy::kUsbIdentity,
    .search = toy::Search,
    .readCfg = toy::ReadCfg,
    .getActiveId = toy::FetchId,
    .beep = toy::Beep,
};

}  // namespace tavlyn
