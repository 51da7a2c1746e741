// Finding the Ethernet adapters of devices, by UDP.
#pragma once

#include <array>
#include <cstdint>

namespace tavlyn {

using IpAddress = std::array<std::uint8_t, 4>;
using MacAddress = std::array<std::uint8_t, 6>;

// The adapter's hardware address; zeros when nothing answered. False when there is no socket to ask with.
bool FetchMacAddr(IpAddress address, MacAddress& mac);

}  // namespace tavlyn
