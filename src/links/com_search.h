// Finding devices on serial ports: COM numbers are tried one after the other.
#pragma once

#include <cstdint>

#include "links/probe.h"
#include "links/serial_port.h"
#include "platform/platform.h"

namespace tavlyn {

// How to look for a family's devices on the ports of the range.
struct ComSearch {
  Probe probe;
  platform::ComLine line;
  void (SerialPort::*useTimeouts)();
  // What a find writes to its entry besides link and kind; name is "COM3:" and so on.
  void (*found)(tsDevEntry& entry, const char* name);
  // Whether finds are appended to the table: the search then skips ports that an entry has a port object for,
  // also visits all virtual ports, and restores ActDev after each test. Otherwise it empties the table first,
  // and ActDev ends up as the entry tested last.
  bool appends;
};
bool SearchComs(const ComSearch& search);

void ScanVirtualComs();

// Whether some entry has a port object for this number.
bool PortInUse(std::uint32_t number);

}  // namespace tavlyn
