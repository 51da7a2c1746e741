// The settings of a magnetic-stripe reader.
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "magstripe/layout.h"
#include "tools/wire/places.h"

namespace tavlyn::wire {
namespace {

using Commands = std::vector<std::string>;

constexpr unsigned kColours = 3;

// The keys of the text file by the places of their values.
struct Keys {
  struct {
    std::uint16_t LUID;
  } entry{};
  tsSorbaneCfg cfg{};

  std::string Of(const void* wanted) {
    const struct { std::size_t outer, inner; } at{};
    tsSorbaneField& field = cfg.UserField.front();
    const struct {
      const void* place;
      const char* key;
    } keys[] = {
#define SETTING(key, count, inners, place, form, comment) {&(place), key},
#include "magstripe/text_file.inc"
    };
    for (const auto& each : keys) {
      if (each.place == wanted) return each.key;
    }
    return "";
  }
};

std::string BitsText(unsigned shift, unsigned mask) {
  const unsigned last = shift + static_cast<unsigned>(std::popcount(mask)) - 1;
  if (mask == 0xFF) return "all";
  return last == shift ? std::to_string(shift) : std::to_string(shift) + " to " + std::to_string(last);
}

std::string Indexed(std::string key, std::size_t index) {
  const std::size_t last = key.rfind('#');
  return last == std::string::npos ? key : key.replace(last, 1, std::to_string(index));
}

template <typename Table, typename Owner>
void AddBits(std::vector<Place>& places, const Commands& commands, const Table& table, Keys& keys,
             const Owner& owner) {
  for (const auto& bits : table) {
    places.push_back({commands, std::to_string(bits.byte), BitsText(bits.shift, bits.mask),
                      keys.Of(&(owner.*bits.member)), "", bits.mask});
  }
}

void AddFields(std::vector<Place>& places, Keys& keys) {
  const tsSorbaneField& field = keys.cfg.UserField.front();
  for (const magstripe::FieldPart& part : magstripe::kFieldParts) {
    const Commands commands{part.read.name, part.write.name};
    AddBits(places, commands, part.bits, keys, field);
    if (part.keys == 0) continue;
    const std::string key = keys.Of(field.Keybyte.data());
    places.push_back({commands,
                      std::to_string(part.keysAt) + " to " + std::to_string(part.keysAt + part.keys - 1),
                      "all", key, Indexed(key, part.firstKey) + " onward"});
  }
}

void AddSystem(std::vector<Place>& places, Keys& keys) {
  const Commands commands{magstripe::kReadSystem.name, magstripe::kWriteSystem.name};
  AddBits(places, commands, magstripe::kSystemBits, keys, keys.cfg);
  const auto add = [&](std::size_t byte, const char* bits, const void* place) {
    places.push_back({commands, std::to_string(byte), bits, keys.Of(place)});
  };
  add(magstripe::kKeyPressAt, "all, in steps of 4", &keys.cfg.KeyPressTime);
  add(magstripe::kKeyReleaseAt, "all, in steps of 4", &keys.cfg.KeyReleaseTime);
  add(magstripe::kLuidAt, "low byte", &keys.entry.LUID);
  add(magstripe::kLuidAt + 1, "high byte", &keys.entry.LUID);
}

void AddLeds(std::vector<Place>& places, Keys& keys) {
  const std::string key = keys.Of(keys.cfg.LedColor.data());
  for (std::size_t led = 0; led < magstripe::kLedPlaces.size(); ++led) {
    const magstripe::LedPlace place = magstripe::kLedPlaces[led];
    places.push_back({{magstripe::kReadLeds.name, magstripe::kWriteLeds.name},
                      std::to_string(place.byte),
                      BitsText(place.shift, kColours),
                      key,
                      Indexed(key, led),
                      kColours});
  }
}

}  // namespace

std::vector<Place> MagstripePlaces() {
  std::vector<Place> places;
  Keys keys;
  AddFields(places, keys);
  AddSystem(places, keys);
  AddLeds(places, keys);
  return places;
}

}  // namespace tavlyn::wire
