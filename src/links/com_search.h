// Finding devices on serial ports: COM numbers are tried one after the other.
#pragma once

#include <array>
#include <cstdint>

#include "links/probe.h"

namespace tavlyn {

// VirtualComFlags[n]: COM n belongs to a virtual port of the maker or to a PCMCIA card.
inline constinit std::array<std::uint8_t, platform::kHighestCom + 1> VirtualComFlags{};
// Speed of the reader search.
inline constinit std::uint32_t DefaultBaud = 9600;

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
