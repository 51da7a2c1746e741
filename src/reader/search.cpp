// The search for card readers over all links.
#include <cstdio>
#include <cstring>

#include "api.h"
#include "core/state.h"
#include "core/trace.h"
#include "hid/arrival.h"
#include "hid/hid_search.h"
#include "hid/vidpid_table.h"
#include "links/com_search.h"
#include "links/ethernet_search.h"
#include "links/libusb_search.h"
#include "links/link_socket.h"
#include "links/serial_port.h"
#include "reader/exchange.h"
#include "reader/product.h"

namespace tavlyn::reader {
namespace {

constexpr const char* kSearchTag = "tavlyn_USBConnect";
// These readers beep when they have been found.
constexpr const char* kBeepsWhenFound = "19E5:2021 Orvantis Quill";

constexpr Probe kProbe{Ping, kReader};

void AddReader(const char* path, std::int32_t row) {
  tsDevEntry* entry = NextHidEntry();
  if (entry == nullptr) return;
  entry->bFound = 1;
  const tsVidPidRow* matched = row >= 0 ? &VidPidRowAt(row) : nullptr;
  if (matched != nullptr && SameIds({matched->VID, matched->PID}, kReportId1Pair)) {
    entry->bReportId1 = 1;
    entry->hDev = OpenDeviceOverlapped(path);
  } else {
    entry->hDev = OpenDevice(path);
  }
  CountHidEntry(*entry, kReader, path, row);
}

void NameEntry(tsDevEntry& entry, const char* name) {
  entry.bFound = 1;
  std::snprintf(entry.DevName, sizeof entry.DevName, "%s", name);
}

void SearchHid(std::int16_t start) {
  SearchHidDevices(kUsbIdentity, AddReader);
  if (shared.DevCnt == start) LogLine(kSearchTag, "USBConnect failed to find any devices");
}

void SearchSerialPorts(std::int16_t start) {
  if (SearchPorts() && shared.DevCnt != start) {
    Activate(0);
    return;
  }
  shared.SearchErr |= TAVLYN_ERR_CONNECT;
  LogErrorCode(kSearchTag);
  if (shared.DevCnt == 0) LogLine(kSearchTag, "CommCnct failed to find any devices");
}

bool SearchEthernet() {
  if (!XportConnect(shared.search.SrchIpAddr, shared.search.SrchIpPort, kProbe) &&
      !TunnelConnect(shared.search.SrchIpAddr, shared.search.SrchIpPort, kProbe))
    return false;
  EntryOfActDev().ProductKind = kReader;
  EntryOfActDev().VidPidRow = -1;
  return true;
}

bool SearchLinks() {
  CloseTunnel();
  const std::int16_t start = shared.DevCnt;
  shared.SearchErr = 0;
  if (SearchAllows(kUsb)) SearchHid(start);
  if (shared.DevCnt == start && SearchAllows(kCom)) SearchSerialPorts(start);
  // A search that reaches the Ethernet stage and finds nothing ends without a log line.
  if (shared.DevCnt == start && SearchAllows(kEthernet) && !SearchEthernet()) return false;
  if (shared.DevCnt == start) {
    LogLine(kSearchTag, kFailed);
    return false;
  }
  EntryOfActDev().ProductKind = kReader;
  return true;
}

}  // namespace

bool Ping() { return Exchange(command::kPing).xfer == Xfer::kDone; }

bool Search() {
  if (SearchLibusb(kProbe)) {
    EntryOfActDev().PlusState = kPlusReader;
    EntryOfActDev().ProductKind = kReader;
    Classify();
    return true;
  }
  LoadVidPidTable();
  if (!SearchLinks()) return false;
  LogLine("USBConnect", kSuccess);
  if (std::strcmp(GetVidPidVendorName(), kBeepsWhenFound) == 0) Beep(0, 0);
  Classify();
  return true;
}

std::uint32_t CheckArrival(const char* path) {
  return tavlyn::CheckArrival(path, {.path = kReaderPair, .device = kUsbIdentity});
}

ComSearch PortSearch() {
  return {.probe = kProbe,
          .line = {shared.search.DefaultBaud, 0, 0},
          .useTimeouts = &SerialPort::UseNormalTimeouts,
          .found = NameEntry,
          .appends = false};
}

bool SearchPorts() { return tavlyn::SearchComs(PortSearch()); }

}  // namespace tavlyn::reader
