#include "links/com_search.h"

#include <algorithm>
#include <cstdio>

#include "api.h"
#include "links/serial_port.h"

namespace tavlyn {
namespace {

// One port of the reader search; true when a reader answered there.
bool TryReaderPort(std::uint16_t number, tsDevEntry& entry, Probe answers) {
  SerialPort* port = ClosedPort(entry);
  if (port == nullptr) return false;
  entry.LinkKind = kBySerialPort;
  port->SetPortNum(number);
  port->SetLine({shared.search.DefaultBaud, 0, 0});
  port->UseNormalTimeouts();
  // A port that does not open leaves its object for the next candidate.
  if (!port->Open()) return false;
  shared.ActDev = shared.DevCnt;
  if (!answers()) {
    DropPort(entry);
    return false;
  }
  entry.bFound = 1;
  std::snprintf(entry.DevName, sizeof entry.DevName, "COM%d:", number);
  Count(entry, kReader);
  return true;
}

// One port of the magstripe search; true when such a reader answered there.
bool TrySorbanePort(std::uint16_t number, tsDevEntry& entry, SerialPort& port, Probe answers) {
  // Also a new one, which counts as open while a socket is.
  port.Close();
  port.SetLine({9600, 0, 0});
  port.UseFastTimeouts();
  entry.LinkKind = kBySerialPort;
  port.SetPortNum(number);
  if (!port.Open()) return false;
  const std::int16_t active = shared.ActDev;
  shared.ActDev = shared.DevCnt;
  const bool answered = answers();
  shared.ActDev = active;
  if (!answered) {
    DropPort(entry);
    return false;
  }
  Count(entry, kMagstripe);
  // Deliberately the name of entry 0, whichever was filled; and bFound stays.
  std::snprintf(DevTable[0].DevName, sizeof DevTable[0].DevName, "COM%d:", number);
  return true;
}

void ScanUnlessOff() {
  if (shared.search.VComSrchHi != 0 && shared.search.VComSrchLo != 0) ScanVirtualComs();
}

bool InRange(std::uint16_t number) {
  return number >= shared.search.ComSrchLo && number <= shared.search.ComSrchHi;
}

}  // namespace

void ScanVirtualComs() {
  shared.search.VirtualComFlags.fill(0);
  platform::TheHost().ports.FindVirtual(shared.search.VirtualComFlags);
}

bool PortInUse(std::uint32_t number) {
  return std::ranges::any_of(DevTable.Reached(), [&](const tsDevEntry& entry) {
    return entry.pSerialPort != nullptr && entry.pSerialPort->PortNum() == number;
  });
}

bool SearchReaderComs(Probe answers) {
  shared.DevCnt = 0;
  shared.ActDev = 0;
  // What the scan finds deliberately changes nothing here: a virtual port outside the range is not visited.
  ScanUnlessOff();
  bool found = false;
  for (std::uint16_t number = 1; number <= platform::kHighestCom; ++number) {
    tsDevEntry* entry = NextEntry();
    if (!InRange(number) || entry == nullptr) continue;
    found = TryReaderPort(number, *entry, answers) || found;
  }
  return found;
}

bool SearchSorbaneComs(Probe answers) {
  ScanUnlessOff();
  bool found = false;
  for (std::uint16_t number = 1; number <= platform::kHighestCom; ++number) {
    tsDevEntry* entry = NextEntry();
    const bool visited = InRange(number) || shared.search.VirtualComFlags[number] != 0;
    if (entry == nullptr || !visited || PortInUse(number)) continue;
    SerialPort* port = PortOf(*entry);
    // Ends the search without a result, whatever it has found.
    if (port == nullptr) return false;
    found = TrySorbanePort(number, *entry, *port, answers) || found;
  }
  return found;
}

}  // namespace tavlyn

using namespace tavlyn;

void SetBaudRate(std::uint32_t baud) { shared.search.DefaultBaud = baud; }
