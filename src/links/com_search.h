// Finding devices on serial ports: COM numbers are tried one after the other.
#pragma once

#include <cstdint>

#include "links/probe.h"
#include "links/serial_port.h"
#include "platform/platform.h"

namespace tavlyn {

// How a family's devices are looked for on the ports of the range.
struct ComSearch {
  Probe probe;
  platform::ComLine line;
  void (SerialPort::*useTimeouts)();
  // What a find leaves in the table besides the link, the kind and the count; name is "COM3:" and so on.
  void (*found)(tsDevEntry& entry, const char* name);
  // Appends to the table: leaves alone the ports that an entry has a port object for, goes to all virtual
  // ports, too, and puts ActDev back after each test. A search that does not empties the table first, and
  // ActDev is afterwards the entry tested last.
  bool appends;
};
bool SearchComs(const ComSearch& search);

void ScanVirtualComs();

// Some entry has a port object for this number.
bool PortInUse(std::uint32_t number);

}  // namespace tavlyn
