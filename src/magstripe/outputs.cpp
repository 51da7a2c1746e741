#include "magstripe/outputs.h"

#include <algorithm>

#include "core/fields.h"
#include "core/state.h"
#include "magstripe/transactions.h"
#include "magstripe/wire.h"

namespace tavlyn {
namespace {

constexpr int kMostBeeps = 5;
constexpr int kMostLongBeeps = 2;

constexpr std::uint8_t kRed = 1;
constexpr std::uint8_t kGreen = 2;
constexpr std::array<std::uint8_t, kSorbaneLeds> kReaderColors = {1, 0, 2, 1, 3};  // the reader's own again

}  // namespace

std::uint32_t SorbaneBeep(std::uint8_t count, std::int16_t longBeep) {
  const bool isLong = longBeep != 0;
  const int beeps = std::clamp<int>(count, 1, isLong ? kMostLongBeeps : kMostBeeps);
  const SorbaneCommand& command = isLong ? sorbane::kLongBeeps : sorbane::kShortBeeps;
  return SorbaneTell(command, {static_cast<char>('0' + beeps)}) ? 1 : 0;
}

std::uint32_t SorbaneShowLeds() {
  return SorbaneTell(sorbane::kWriteLeds, {}, PackLeds(EntryOfActDev().SorbaneBlock.Cfg)) ? 1 : 0;
}

std::uint32_t SorbaneGetLedCtrl(std::int16_t* words) {
  if (words == nullptr) return 0;
  const std::uint8_t color = EntryOfActDev().SorbaneBlock.Cfg.LedColor[0];
  words[field::LEDCtrl_iRedLEDState.word] = (color & kRed) != 0 ? 1 : 0;
  words[field::LEDCtrl_iGrnLEDState.word] = (color & kGreen) != 0 ? 1 : 0;
  return 1;
}

std::uint32_t SorbaneSetLedCtrl(const std::int16_t* words) {
  if (words == nullptr) return 0;
  auto& colors = EntryOfActDev().SorbaneBlock.Cfg.LedColor;
  if (words[field::LEDCtrl_bAppCtrlsLED.word] != 0) {
    const int red = words[field::LEDCtrl_iRedLEDState.word] != 0 ? kRed : 0;
    const int green = words[field::LEDCtrl_iGrnLEDState.word] != 0 ? kGreen : 0;
    colors.fill(static_cast<std::uint8_t>(red | green));
  } else {
    colors = kReaderColors;
  }
  return SorbaneShowLeds();
}

}  // namespace tavlyn
