// Finding devices behind Ethernet adapters. With a fourth octet of 0 the addresses 1 to 254 are tried.
#pragma once

#include <cstdint>

#include "links/discovery.h"
#include "links/probe.h"

namespace tavlyn {

// The adapter passes on the device's serial protocol.
bool XportConnect(IpAddress address, std::uint16_t port, const Probe& probe);

// The adapter carries feature reports in text frames.
bool TunnelConnect(IpAddress address, std::uint16_t port, const Probe& probe);

}  // namespace tavlyn
