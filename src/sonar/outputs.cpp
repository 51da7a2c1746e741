// What a sonar sensor shows and types: its LEDs and its keystrokes.
#include <array>

#include "api.h"
#include "core/fields.h"
#include "core/openings.h"
#include "sonar/exchange.h"
#include "sonar/product.h"
#include "sonar/records.h"

namespace tavlyn::sonar {
namespace {

constexpr std::uint16_t kRedOn = 1;
constexpr std::uint16_t kAppControls = 2;
constexpr std::uint16_t kGreenOn = 4;

struct LedBit {
  FieldId field;
  std::uint16_t bit;
};
constexpr std::array<LedBit, 3> kLedBits = {{
    {field::LEDCtrl_iRedLEDState, kRedOn},
    {field::LEDCtrl_bAppCtrlsLED, kAppControls},
    {field::LEDCtrl_iGrnLEDState, kGreenOn},
}};

}  // namespace

std::uint32_t GetLedCtrl(std::int16_t* words) {
  if (words == nullptr) return 0;
  const std::uint16_t flags = ActiveBlock().words[LEDFlagsS];
  const bool known = flags <= (kRedOn | kAppControls | kGreenOn);
  for (const LedBit& led : kLedBits) words[led.field.word] = known && (flags & led.bit) != 0 ? 1 : 0;
  return known ? 1 : flags;
}

// Deliberately does not mark the record as changed: the flags are sent with its next write.
std::uint32_t SetLedCtrl(const std::int16_t* words) {
  if (words == nullptr) return 0;
  std::uint16_t& flags = ActiveBlock().words[LEDFlagsS];
  flags = 0;
  for (const LedBit& led : kLedBits) {
    if (words[led.field.word] != 0) flags |= led.bit;
  }
  return flags;
}

}  // namespace tavlyn::sonar

using namespace tavlyn;

std::uint32_t HaltKBSends(std::uint32_t halt) {
  if (!SonarIsActive()) return UnsupportedSigned();
  const sonar::Command command = halt != 0 ? sonar::Command::kHaltKeys : sonar::Command::kSendKeys;
  shared.SearchErr = 0;
  sonar::ActiveBlock().SonarOpMark = static_cast<std::uint32_t>(command);
  if (sonar::Fire(command)) return 1;
  shared.SearchErr |= TAVLYN_ERR_HALT_KB_SENDS;
  return 0;
}
