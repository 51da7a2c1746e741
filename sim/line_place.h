// Where a device is connected if not to USB as a HID device.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "sim/devices/faulty_line.h"
#include "sim/devices/model.h"

namespace tavlyn::sim {

enum class LineKind : std::uint8_t { kCom, kComAscii, kEthernet, kBulk, kAcm };

struct LinePlace {
  LineKind kind{};
  std::uint16_t number = 0;          // COM port number or TCP port
  std::array<std::uint8_t, 4> ip{};  // of an adapter
  bool magstripe = false;            // the device there is a magnetic-stripe reader
};

// The device has no port or address of this machine's: it is a USB device, which is no HID device.
constexpr bool IsUsb(const LinePlace& place) {
  return place.kind == LineKind::kBulk || place.kind == LineKind::kAcm;
}

// com3, com3:ascii, 127.0.0.1:10001, bulk, acm. Letters of either case.
std::optional<LinePlace> ParseLinePlace(const std::string& text);

// True if two devices cannot have these places at once.
bool Collide(const LinePlace& one, const LinePlace& other);

// The device's side of such a line, for a reader or, on a port, a magnetic-stripe reader.
std::unique_ptr<FaultyLine> MakeLine(const LinePlace& place, const std::shared_ptr<Model>& device);

}  // namespace tavlyn::sim
