#include <algorithm>

#include "api.h"
#include "core/pause.h"
#include "core/state.h"
#include "hid/arrival.h"
#include "hid/hid_search.h"
#include "links/com_search.h"
#include "links/serial_port.h"
#include "magstripe/exchange.h"
#include "magstripe/product.h"

namespace tavlyn::magstripe {
namespace {

constexpr std::uint32_t kWakeTime = 30;
constexpr std::uint32_t kAfterAnswer = 2;

bool IsOpened(const tsDevEntry& entry) { return entry.SorbaneBlock.bOpened != 0; }

bool OneIsOpened() { return std::ranges::any_of(LiveEntries(), IsOpened); }

void AddReader(const char* path, std::int32_t row) {
  tsDevEntry* entry = NextHidEntry();
  if (entry == nullptr) return;
  entry->SorbaneBlock.bOpened = 1;
  entry->hDev = OpenDevice(path);
  CountHidEntry(*entry, kMagstripe, path, row);
}

}  // namespace

bool Search() {
  shared.SearchErr = 0;
  if (OneIsOpened()) {
    shared.SearchErr = TAVLYN_ERR_CONNECT;
    return false;
  }
  const std::int16_t start = shared.DevCnt;
  if (SearchAllows(kUsb)) SearchHidDevices(kUsbIdentity, AddReader);
  if (shared.DevCnt != start) return true;
  if (!SearchAllows(kCom)) return false;
  if (!SearchPorts()) {
    shared.SearchErr |= TAVLYN_ERR_CONNECT;
    return false;
  }
  return shared.DevCnt != start;
}

bool SearchPorts() { return SearchSorbaneComs(Ping); }

std::uint32_t CheckArrival(const char* path) {
  // Deliberately the path of a card reader.
  return tavlyn::CheckArrival(path, {.path = kReaderPair, .device = kUsbIdentity});
}

bool Ping() {
  const bool serial = OnSerialPort();
  SerialPort* port = EntryOfActDev().pSerialPort;
  if (serial) {
    constexpr std::array<std::uint8_t, 2> kWake = {'\r', '\r'};
    Pause(kWakeTime);
    if (port != nullptr) {
      port->Write(kWake);
      port->Flush();
    }
    Pause(kWakeTime);
    if (port != nullptr) port->ClearInput();
  }
  Reply reply;
  const bool answered = Identify(reply);
  if (serial) Pause(kAfterAnswer);
  return answered;
}

}  // namespace tavlyn::magstripe
