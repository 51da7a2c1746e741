// The one way to a feature report. A buffer is n + 1 bytes: byte 0 belongs to the channel, the payload stands
// in bytes 1 to n. With TunnelLink set the reports travel as text frames over the socket.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "platform/platform.h"

namespace tavlyn {

// The usual report: byte 0 for the channel, b1 to b8.
using Report = std::array<std::uint8_t, 9>;

// n is the payload length, dev an index of the table. A failed read leaves no error word: the caller knows
// what it was for. A failed write leaves 0x202.
bool ReadFeatureReport(std::int32_t n, std::int32_t dev, std::uint8_t* buffer);
bool WriteFeatureReport(std::int32_t n, std::int32_t dev, const std::uint8_t* buffer);

// The usual report to and from the active device.
bool SendReport(const Report& report);
bool FetchReport(Report& report);

// Fetches a queued input report and drops the rest; waits for none. False when nothing was queued.
bool ReadInputReport(platform::Handle device, std::span<std::uint8_t> buffer);

}  // namespace tavlyn
