// Modules of a reader that are switched one by one. What their numbers mean is up to the caller.
#include "api.h"
#include "core/openings.h"
#include "core/trace.h"
#include "extensions/exchange.h"

namespace tavlyn {
namespace {

constexpr std::uint8_t kModuleOn = 0x81;
constexpr std::uint8_t kModuleOff = 0x80;
constexpr std::uint8_t kConfirmed = 0xFF;

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

std::uint8_t GetModuleState(std::uint16_t module, std::uint16_t* state) {
  if (!ReaderIsActive()) return 0;
  EntryOfActDev().LastLibErr = 0;
  ReportPair pair;
  if (!ExchangePair(reader::command::kReadModule, pair, static_cast<std::uint8_t>(module))) {
    Fail("ModuleState::getModuleState", TAVLYN_ERR_GET_MODULE);
    return 0;
  }
  if (state != nullptr) *state = pair.reply[5] == kModuleOn ? 1 : 0;
  return pair.reply[3] == kConfirmed ? 1 : 0;
}

std::uint8_t SetModuleState(std::uint16_t module, std::uint16_t state) {
  if (!ReaderIsActive()) return 0;
  EntryOfActDev().LastLibErr = 0;
  ReportPair pair;
  if (!ExchangePair(reader::command::kWriteModule, pair, static_cast<std::uint8_t>(module),
                    state != 0 ? kModuleOn : kModuleOff)) {
    Fail("ModuleState::setModuleState", TAVLYN_ERR_SET_MODULE);
    return 0;
  }
  return pair.reply[5] == pair.request[5] && pair.reply[3] == kConfirmed ? 1 : 0;
}
