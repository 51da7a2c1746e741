// Where a device hangs when it is on no HID cable.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "sim/devices/faulty_line.h"
#include "sim/devices/model.h"

namespace tavlyn::sim {

enum class LineKind : std::uint8_t { kCom, kComAscii, kEthernet, kBulk };

struct LinePlace {
  LineKind kind{};
  std::uint16_t number = 0;          // of the COM port, or the TCP port
  std::array<std::uint8_t, 4> ip{};  // of an adapter
  bool magstripe = false;            // a magnetic-stripe reader hangs there
};

// com3, com3:ascii, 127.0.0.1:10001, bulk. Letters of either case.
std::optional<LinePlace> ParseLinePlace(const std::string& text);

// Two devices cannot hang there at once.
bool Collide(const LinePlace& one, const LinePlace& other);

// The device's side of such a line: a reader's, or on a port a magnetic-stripe reader's.
std::unique_ptr<FaultyLine> MakeLine(const LinePlace& place, const std::shared_ptr<Model>& device);

}  // namespace tavlyn::sim
