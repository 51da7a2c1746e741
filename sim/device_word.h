// The word by which a device is plugged: its kind, and behind an @ its identity or the place of its line.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "sim/devices/model.h"
#include "sim/line_place.h"

namespace tavlyn::sim {

inline constexpr std::uint16_t kKeldaVid = 0x7A31;
inline constexpr std::uint16_t kKeldaPid = 0x3BFB;

enum class Kind { kReader, kMagstripe, kSonar };

struct DeviceWord {
  Kind kind = Kind::kReader;
  int configurations = 1;  // of a reader; 1: a plain one
  std::uint16_t vid = 0;   // 0: the model's own pair
  std::uint16_t pid = 0;
  std::optional<LinePlace> line;
};

std::optional<DeviceWord> ParseDevice(const std::string& text);

// A reader with numbered reports and a keyboard beside it.
bool IsKelda(const DeviceWord& word);

std::shared_ptr<Model> MakeModel(const DeviceWord& word);

}  // namespace tavlyn::sim
