// The BLE radio that some readers have besides the card radio. Its calls neither check the product nor log
// anything.
#include "api.h"
#include "core/state.h"
#include "extensions/exchange.h"

namespace tavlyn {
namespace {

constexpr std::uint16_t kNothing = 65535;
constexpr std::uint8_t kPresent = 0x80;
constexpr std::uint8_t kConfiguration = 0x03;

// Leaves the reply in the pair.
bool AskRadio(const reader::Command& command, ReportPair& pair, std::uint32_t error, std::uint8_t x = 0) {
  EntryOfActDev().LastLibErr = 0;
  if (ExchangePair(command, pair, x)) return true;
  EntryOfActDev().LastLibErr |= error;
  return false;
}

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

std::uint16_t IsBTLEPresent() {
  if (!ActiveInRange()) return kNothing;
  ReportPair pair;
  return AskRadio(reader::command::kReadBle, pair, TAVLYN_ERR_GET_BLE) && (pair.reply[3] & kPresent) != 0 ? 1
                                                                                                          : 0;
}

std::uint16_t GetBTLEConfiguration() {
  if (!ActiveInRange()) return kNothing;
  ReportPair pair;
  if (!AskRadio(reader::command::kReadBle, pair, TAVLYN_ERR_GET_BLE) || (pair.reply[3] & kPresent) == 0)
    return kNothing;
  return pair.reply[3] & kConfiguration;
}

std::uint16_t SetBTLEConfiguration(std::uint8_t configuration) {
  if (!ActiveInRange()) return shared.UnsupportedValue;
  ReportPair pair;
  return AskRadio(reader::command::kWriteBle, pair, TAVLYN_ERR_SET_BLE, configuration) ? 1 : 0;
}
