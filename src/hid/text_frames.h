// Feature reports as text frames over the socket, for a device behind an Ethernet adapter:
//
//   write    "#HUSB/FR/001L%02d:" payload
//   request  "#Req/FR:"
//   reply    "#DUSB/FR/001L%02d:" vendor ID (2, high byte first) product ID (2) payload
#pragma once

#include <cstdint>

namespace tavlyn {

// The tunnel's half of WriteFeatureReport and ReadFeatureReport, which have cleared the buffer and checked
// the index. A payload is at most 7 bytes on this path, although devices use 8: the adapters in the field
// refuse more.
bool WriteTextFrame(std::int32_t n, const std::uint8_t* buffer);
bool ReadTextFrame(std::int32_t n, std::uint8_t* buffer);

}  // namespace tavlyn
