// Finding devices on serial ports: COM numbers are tried one after the other.
#pragma once

#include <cstdint>

#include "links/probe.h"

namespace tavlyn {

void ScanVirtualComs();

// Some entry has a port object for this number.
bool PortInUse(std::uint32_t number);

// Card readers on the ports of the range; empties the table first. Afterwards ActDev is the entry tested
// last.
bool SearchReaderComs(Probe answers);

// Magstripe readers on the ports of the range and on all virtual ports, but for those that an entry has a
// port object for; appends to the table. ActDev is put back behind each test.
bool SearchSorbaneComs(Probe answers);

}  // namespace tavlyn
