#include "links/com_search.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "api.h"
#include "core/state.h"

namespace tavlyn {
namespace {

SerialPort* PortFor(tsDevEntry& entry, const ComSearch& search) {
  if (!search.appends) return ClosedPort(entry);
  SerialPort* port = PortOf(entry);
  // Closes even a new one, which counts as open while the socket is.
  if (port != nullptr) port->Close();
  return port;
}

bool Answers(const ComSearch& search) {
  const std::int16_t active = shared.ActDev;
  shared.ActDev = shared.DevCnt;
  const bool answered = search.probe.answers();
  if (search.appends) shared.ActDev = active;
  return answered;
}

// Tries one port; true when a device answered.
bool TryPort(std::uint16_t number, tsDevEntry& entry, SerialPort& port, const ComSearch& search) {
  entry.LinkKind = kBySerialPort;
  port.SetPortNum(number);
  port.SetLine(search.line);
  (port.*search.useTimeouts)();
  // The object of a port that does not open is kept for the next candidate.
  if (!port.Open()) return false;
  if (!Answers(search)) {
    CloseAndDropPort(entry);
    return false;
  }
  std::array<char, 16> name{};
  std::snprintf(name.data(), name.size(), "COM%d:", number);
  search.found(entry, name.data());
  Count(entry, search.probe.kind);
  return true;
}

void ScanUnlessOff() {
  if (shared.search.VComSrchHi != 0 && shared.search.VComSrchLo != 0) ScanVirtualComs();
}

bool IsVisited(std::uint16_t number, const ComSearch& search) {
  const bool inRange = number >= shared.search.ComSrchLo && number <= shared.search.ComSrchHi;
  if (!search.appends) return inRange;
  return (inRange || shared.search.VirtualComFlags[number] != 0) && !PortInUse(number);
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

bool SearchComs(const ComSearch& search) {
  if (!search.appends) shared.DevCnt = shared.ActDev = 0;
  // Deliberately scans for every search, even one that does not use the result.
  ScanUnlessOff();
  bool found = false;
  for (std::uint16_t number = 1; number <= platform::kHighestCom; ++number) {
    tsDevEntry* entry = NextEntry();
    if (entry == nullptr || !IsVisited(number, search)) continue;
    SerialPort* port = PortFor(*entry, search);
    // Without memory for a port an appending search fails, whatever it has found so far.
    if (port == nullptr && search.appends) return false;
    found = (port != nullptr && TryPort(number, *entry, *port, search)) || found;
  }
  return found;
}

}  // namespace tavlyn

using namespace tavlyn;

void SetBaudRate(std::uint32_t baud) { shared.search.DefaultBaud = baud; }
