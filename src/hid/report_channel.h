// The only way to send or fetch a feature report. A buffer has n + 1 bytes: byte 0 belongs to the channel,
// bytes 1 to n are the payload. With TunnelLink set the reports travel as text frames over the socket.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/wire.h"
#include "platform/platform.h"

namespace tavlyn {

// The usual report: byte 0 for the channel, b1 to b8.
using Report = std::array<std::uint8_t, 9>;

// n is the payload length, dev an index of the table. A failed read leaves no error word: the caller knows
// what it was for. A failed write leaves TAVLYN_ERR_WRITE_REPORT. The trace shows no more than the first
// bytes.
bool ReadFeatureReport(std::int32_t n, std::int32_t dev, std::uint8_t* buffer, std::size_t shown = kAllShown);
bool WriteFeatureReport(std::int32_t n, std::int32_t dev, const std::uint8_t* buffer,
                        std::size_t shown = kAllShown);

// The usual report to and from the active device.
bool SendReport(const Report& report, std::size_t shown = kAllShown);
bool FetchReport(Report& report);

// Fetches a queued input report and drops the rest, without waiting. False when nothing was queued.
bool ReadInputReport(platform::Handle device, std::span<std::uint8_t> buffer);

}  // namespace tavlyn
