// Where a device hangs when it is on no HID cable.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "sim/devices/faulty_line.h"
#include "sim/devices/reader.h"

namespace tavlyn::sim {

enum class LineKind : std::uint8_t { kCom, kComAscii, kEthernet, kBulk };

struct LinePlace {
  LineKind kind{};
  std::uint16_t number = 0;          // of the COM port, or the TCP port
  std::array<std::uint8_t, 4> ip{};  // of an adapter
};

// com3, com3:ascii, 127.0.0.1:10001, bulk. Letters of either case.
std::optional<LinePlace> ParseLinePlace(const std::string& text);

// Two devices cannot hang there at once.
bool Collide(const LinePlace& one, const LinePlace& other);

// The reader's side of such a line.
std::unique_ptr<FaultyLine> MakeLine(const LinePlace& place, std::shared_ptr<Reader> reader);

}  // namespace tavlyn::sim
