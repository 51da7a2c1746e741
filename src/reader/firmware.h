// Firmware words of a plus reader.
#pragma once

#include <cstdint>

namespace tavlyn {

// One word; 0 for a plain reader or a failed exchange. Over reports the answer is also kept in FWVersion.
std::uint32_t QueryFirmwareWord(std::int16_t cpu, std::int16_t index);

// FWVersion as read at connect.
std::uint32_t FirmwareVersion(std::uint16_t cpu, std::uint16_t index);

}  // namespace tavlyn
