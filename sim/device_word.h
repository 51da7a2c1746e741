// The word that describes a device to plug in: its kind, after an @ its identity or the place of its line,
// and after commas its own serial number and LUID.
#pragma once

#include <cstddef>
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
  int configurations = 1;  // of a reader; a plain one has 1
  std::uint16_t vid = 0;   // 0: the model's own pair
  std::uint16_t pid = 0;
  std::optional<LinePlace> line;
  std::string serial;  // if empty, made from the device's number; so is an absent LUID
  std::optional<std::uint16_t> luid;
};

// None on an error, which problem then describes.
std::optional<DeviceWord> ParseDevice(const std::string& text, std::string& problem);

// A reader with numbered reports and a keyboard beside it.
bool IsKelda(const DeviceWord& word);

// number: which device of the rack it is, from 1. No two share a serial number or LUID unless their words say
// so.
std::shared_ptr<Model> MakeModel(const DeviceWord& word, std::size_t number);

}  // namespace tavlyn::sim
