// Connect: which devices are looked for, in which order, and what is done with each one found.
#include "api.h"
#include "core/front/firmware.h"
#include "core/lock.h"
#include "core/openings.h"
#include "core/trace.h"
#include "core/version.h"
#include "hid/enumeration.h"
#include "links/libusb_pipe.h"
#include "links/link_socket.h"
#include "links/serial_port.h"

namespace tavlyn {
namespace {

constexpr const char* kConnect = "USBConnect";
constexpr const char* kDisconnect = "USBDisconnect";

void ResetSearchMarks(tsDevEntry& entry) {
  entry.bSepFldCapable = 1;
  entry.bPartNumberPending = 1;
  entry.bFound = 0;
  entry.PlusState = kPlusUnknown;
  entry.bReportId1 = 0;
}

void EmptyTableForSearch() {
  shared.ActDev = 0;
  shared.DevCnt = 0;
  shared.vidPid.VidPidCnt = 0;
  DevTable[0].CardTypeList.fill(0);
}

// The first family that finds something ends the search.
bool Search() {
  for (const Product* product : kProducts) {
    if ((shared.search.ConnectMask & product->kind) != 0 && product->search()) return true;
  }
  return false;
}

void LogFirmware() {
  LogLine(kConnect, "Firmware: CPU0 Application in hex is  %x", EntryOfActDev().FWVersion[0][0]);
  LogLine(kConnect, "Firmware: CPU1 Application in hex is  %x", EntryOfActDev().FWVersion[1][0]);
  LogLine(kConnect, "TavlynAPI Library version is %d.%d.%d", kVersionMajor, kVersionMinor, kVersionBuild);
}

bool ReadDevices(std::size_t firmwareRows) {
  for (std::int16_t index = 0; index < shared.DevCnt; ++index) {
    EntryOfActDev().ActConfig = 0;
    UseConfig(0);
    shared.ActDev = index;
    if (ReadCfgLocked() == 0) {
      shared.SearchErr |= TAVLYN_ERR_CONNECT;
      LogErrorCode(kConnect);
      shared.ActDev = 0;
      return false;
    }
    ReadFirmwareWords(firmwareRows);
    LogFirmware();
  }
  shared.ActDev = 0;
  return true;
}

// A sweep over a network pauses at each of hundreds of addresses; what makes the pauses punctual is set up
// once.
class Pausing {
 public:
  Pausing() { platform::TheHost().clock.BeginPauses(); }
  ~Pausing() { platform::TheHost().clock.EndPauses(); }
  Pausing(const Pausing&) = delete;
  Pausing& operator=(const Pausing&) = delete;
};

bool SearchPausing() {
  const Pausing pausing;
  return Search();
}

std::uint32_t Connect(std::uint32_t* did) {
  const Locked lock;
  RefreshLibusb();
  CloseTunnel();
  // Handles of an earlier connect deliberately stay open and are lost; serial ports stay in their entries for
  // reuse.
  EmptyTableForSearch();
  shared.HidFoundCnt = 0;
  for (tsDevEntry& entry : DevTable.Reached()) ResetSearchMarks(entry);
  const bool found = SearchPausing();
  // Asked once, of the device that is now active, and applied to all of them.
  const SerialPort* port = EntryOfActDev().pSerialPort;
  const bool onLibusb = port != nullptr && port->HasUsbHandle();
  if (!ReadDevices(onLibusb ? kCpus - 1 : kCpus) || !found) return 0;
  if (did != nullptr) *did = EntryOfActDev().DID;
  return 1;
}

void CloseEntry(tsDevEntry& entry) {
  ResetSearchMarks(entry);
  if (entry.hDev != platform::kNoHandle) {
    CloseDevice(entry.hDev);
    LogLine(kDisconnect, "Handle closed successfully");
  }
  if (entry.pSerialPort != nullptr) {
    entry.pSerialPort->Close();
    delete entry.pSerialPort;
  }
  CloseTunnel();
  entry.hDev = platform::kNoHandle;
  entry.pSerialPort = nullptr;
  entry.ProductKind = 0;
}

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

std::uint32_t USBConnect(std::uint32_t* pDID) {
  LogLine(kConnect, "ENTER");
  const std::uint32_t result = Connect(pDID);
  LogLine(kConnect, "EXIT");
  return result;
}

std::uint32_t usbConnect() {
  std::uint32_t did = 0;
  return USBConnect(&did);
}

std::uint32_t USBDisconnect() {
  LogLine(kDisconnect, "ENTER");
  {
    const Locked lock;
    for (tsDevEntry& entry : DevTable.Reached()) CloseEntry(entry);
    EmptyTableForSearch();
  }
  LogLine(kDisconnect, "EXIT");
  return 1;
}
