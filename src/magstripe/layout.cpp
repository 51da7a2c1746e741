#include "magstripe/layout.h"

#include <algorithm>

namespace tavlyn::magstripe {
namespace {

constexpr int kTimeStepShift = 2;  // steps of 4 ms
constexpr std::uint8_t kColorMask = 3;

template <typename Owner>
void Unpack(std::span<const Bits<Owner>> table, const Payload& bytes, Owner& owner) {
  for (const auto& bits : table) {
    owner.*bits.member = static_cast<std::uint8_t>(bytes[bits.byte] >> bits.shift & bits.mask);
  }
}

// Any value but 0 sets a flag; a number loses the bits that do not fit.
template <typename Owner>
void Pack(std::span<const Bits<Owner>> table, const Owner& owner, Payload& bytes) {
  for (const auto& bits : table) {
    const std::uint8_t value = owner.*bits.member;
    const int cut = bits.mask == 1 ? int{value != 0} : value & bits.mask;
    bytes[bits.byte] = static_cast<std::uint8_t>(bytes[bits.byte] | cut << bits.shift);
  }
}

std::uint16_t Milliseconds(std::uint8_t steps) { return static_cast<std::uint16_t>(steps << kTimeStepShift); }
std::uint8_t Steps(std::uint16_t milliseconds) {
  return static_cast<std::uint8_t>(milliseconds >> kTimeStepShift);
}

}  // namespace

void UnpackField(const FieldPart& part, const Payload& bytes, tsSorbaneField& field) {
  Unpack<tsSorbaneField>(part.bits, bytes, field);
  std::copy_n(bytes.begin() + part.keysAt, part.keys, field.Keybyte.begin() + part.firstKey);
}

Payload PackField(const FieldPart& part, const tsSorbaneField& field) {
  Payload bytes{};
  Pack<tsSorbaneField>(part.bits, field, bytes);
  std::copy_n(field.Keybyte.begin() + part.firstKey, part.keys, bytes.begin() + part.keysAt);
  return bytes;
}

void UnpackSystem(const Payload& bytes, tsSorbaneCfg& cfg) {
  Unpack<tsSorbaneCfg>(kSystemBits, bytes, cfg);
  cfg.KeyPressTime = Milliseconds(bytes[kKeyPressAt]);
  cfg.KeyReleaseTime = Milliseconds(bytes[kKeyReleaseAt]);
  cfg.LUID = static_cast<std::uint16_t>(bytes[kLuidAt] | bytes[kLuidAt + 1] << 8);
}

Payload PackSystem(const tsSorbaneCfg& cfg) {
  Payload bytes{};
  Pack<tsSorbaneCfg>(kSystemBits, cfg, bytes);
  bytes[kKeyPressAt] = Steps(cfg.KeyPressTime);
  bytes[kKeyReleaseAt] = Steps(cfg.KeyReleaseTime);
  bytes[kLuidAt] = static_cast<std::uint8_t>(cfg.LUID);
  bytes[kLuidAt + 1] = static_cast<std::uint8_t>(cfg.LUID >> 8);
  return bytes;
}

void UnpackLeds(const Payload& bytes, tsSorbaneCfg& cfg) {
  for (std::size_t led = 0; led < kLeds; ++led) {
    const LedPlace place = kLedPlaces[led];
    cfg.LedColor[led] = static_cast<std::uint8_t>(bytes[place.byte] >> place.shift & kColorMask);
  }
}

Payload PackLeds(const tsSorbaneCfg& cfg) {
  Payload bytes{};
  for (std::size_t led = 0; led < kLeds; ++led) {
    const LedPlace place = kLedPlaces[led];
    const int color = cfg.LedColor[led] & kColorMask;
    bytes[place.byte] = static_cast<std::uint8_t>(bytes[place.byte] | color << place.shift);
  }
  return bytes;
}

}  // namespace tavlyn::magstripe
