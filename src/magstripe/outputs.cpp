// Beeper and LEDs of a magnetic-stripe reader.
#include <algorithm>
#include <array>

#include "api.h"
#include "core/fields.h"
#include "core/openings.h"
#include "magstripe/exchange.h"
#include "magstripe/layout.h"
#include "magstripe/product.h"

namespace tavlyn::magstripe {
namespace {

constexpr int kMostBeeps = 5;
constexpr int kMostLongBeeps = 2;

constexpr std::uint8_t kRed = 1;
constexpr std::uint8_t kGreen = 2;
constexpr std::uint16_t kMostColor = 3;
// When the reader controls them itself.
constexpr std::array<std::uint8_t, kLeds> kReaderColors = {1, 0, 2, 1, 3};

// Sends the colours of the mirror; they show at once.
std::uint32_t ShowLeds() { return Tell(kWriteLeds, {}, PackLeds(ActiveCfg())) ? 1 : 0; }

// The beeps that an export can name, and the nibbles of Beeper in which they are.
constexpr std::uint16_t kGoodRead = 2;
constexpr std::uint16_t kBadRead = 3;
constexpr int kLongBit = 8;
constexpr int kCountBits = 7;
constexpr std::int16_t kMostBeepCount = 4;
constexpr std::uint32_t kLongFlag = 0x80;

bool IsBeep(std::uint16_t which) { return which == kGoodRead || which == kBadRead; }
int ShiftOf(std::uint16_t which) { return which == kGoodRead ? 4 : 0; }

}  // namespace

std::uint32_t Beep(std::uint8_t count, std::int16_t longBeep) {
  const bool isLong = longBeep != 0;
  const int beeps = std::clamp<int>(count, 1, isLong ? kMostLongBeeps : kMostBeeps);
  const Command& command = isLong ? kLongBeeps : kShortBeeps;
  return Tell(command, {static_cast<char>('0' + beeps)}) ? 1 : 0;
}

std::uint32_t GetLedCtrl(std::int16_t* words) {
  if (words == nullptr) return 0;
  const std::uint8_t color = ActiveCfg().LedColor[0];
  words[field::LEDCtrl_iRedLEDState.word] = (color & kRed) != 0 ? 1 : 0;
  words[field::LEDCtrl_iGrnLEDState.word] = (color & kGreen) != 0 ? 1 : 0;
  return 1;
}

std::uint32_t SetLedCtrl(const std::int16_t* words) {
  if (words == nullptr) return 0;
  auto& colors = ActiveCfg().LedColor;
  if (words[field::LEDCtrl_bAppCtrlsLED.word] != 0) {
    const int red = words[field::LEDCtrl_iRedLEDState.word] != 0 ? kRed : 0;
    const int green = words[field::LEDCtrl_iGrnLEDState.word] != 0 ? kGreen : 0;
    colors.fill(static_cast<std::uint8_t>(red | green));
  } else {
    colors = kReaderColors;
  }
  return ShowLeds();
}

}  // namespace tavlyn::magstripe

using namespace tavlyn;
using namespace tavlyn::magstripe;

std::uint32_t sorbaneGetBeeper(std::uint16_t which) {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  if (!IsBeep(which)) return 0;
  const int nibble = ActiveCfg().Beeper >> ShiftOf(which);
  return static_cast<std::uint32_t>(nibble & kCountBits) | ((nibble & kLongBit) != 0 ? kLongFlag : 0);
}

std::uint32_t sorbaneSetBeeper(std::uint16_t which, std::int16_t count, std::int16_t longBeep) {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  if (!IsBeep(which) || count < 0 || count > kMostBeepCount) return 0;
  const int nibble = count | (longBeep != 0 ? kLongBit : 0);
  const int others = ActiveCfg().Beeper & ~(0x0F << ShiftOf(which));
  ActiveCfg().Beeper = static_cast<std::uint8_t>(others | nibble << ShiftOf(which));
  return 1;
}

std::uint32_t sorbaneGetLED(std::uint16_t index) {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  return index < kLeds ? ActiveCfg().LedColor[index] : 0;
}

std::uint32_t sorbaneSetLED(std::uint16_t index, std::uint16_t color) {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  if (index >= kLeds || color > kMostColor) return 0;
  ActiveCfg().LedColor[index] = static_cast<std::uint8_t>(color);
  return ShowLeds();
}
