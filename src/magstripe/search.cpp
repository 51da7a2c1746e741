// The search for magnetic-stripe readers.
#include <algorithm>
#include <array>
#include <cstdio>

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

// Deliberately names entry 0, whichever was filled, and leaves bFound alone.
void NameFirstEntry(tsDevEntry& /*entry*/, const char* name) {
  std::snprintf(DevTable[0].DevName, sizeof DevTable[0].DevName, "%s", name);
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

ComSearch PortSearch() {
  return {.probe = {Ping, kMagstripe},
          .line = {9600, 0, 0},
          .useTimeouts = &SerialPort::UseFastTimeouts,
          .found = NameFirstEntry,
          .appends = true};
}

bool SearchPorts() { return SearchComs(PortSearch()); }

std::uint32_t CheckArrival(const char* path) {
  // Deliberately expects the path of a card reader.
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
