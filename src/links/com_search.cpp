#include "links/com_search.h"

#include <algorithm>
#include <cstdio>

#include "links/serial_port.h"

namespace tavlyn {
namespace {

constexpr std::uint16_t kHighestPort = 256;

// One port of the reader search; true when a reader answered there.
bool TryReaderPort(std::uint16_t number, tsDevEntry& entry, Probe answers) {
  SerialPort& port = ClosedPort(entry);
  entry.LinkKind = kBySerialPort;
  port.SetPortNum(number);
  port.SetLine({DefaultBaud, 0, 0});
  port.UseNormalTimeouts();
  // A port that does not open leaves its object for the next candidate.
  if (!port.Open()) return false;
  ActDev = DevCnt;
  if (!answers()) {
    DropPort(entry);
    return false;
  }
  entry.bFound = 1;
  entry.ProductKind = kReader;
  std::snprintf(entry.DevName, sizeof entry.DevName, "COM%d:", number);
  ++DevCnt;
  return true;
}

}  // namespace

void ScanVirtualComs() {
  VirtualComFlags.fill(0);
  platform::TheHost().ports.FindVirtual(VirtualComFlags);
}

bool PortInUse(std::uint32_t number) {
  return std::ranges::any_of(DevTable, [&](const tsDevEntry& entry) {
    return entry.pSerialPort != nullptr && entry.pSerialPort->PortNum() == number;
  });
}

bool SearchReaderComs(Probe answers) {
  DevCnt = 0;
  ActDev = 0;
  // What the scan finds deliberately changes nothing here: a virtual port outside the range is not visited.
  if (VComSrchHi != 0 && VComSrchLo != 0) ScanVirtualComs();
  bool found = false;
  for (std::uint16_t number = 1; number <= kHighestPort; ++number) {
    tsDevEntry* entry = NextEntry();
    if (number < ComSrchLo || number > ComSrchHi || entry == nullptr) continue;
    found = TryReaderPort(number, *entry, answers) || found;
  }
  return found;
}

}  // namespace tavlyn
