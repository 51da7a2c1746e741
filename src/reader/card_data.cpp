// Data of the card on the reader, as far as the reader keeps it.
#include <algorithm>
#include <array>

#include "api.h"
#include "core/openings.h"
#include "core/state.h"
#include "reader/exchange.h"

namespace tavlyn {
namespace {

constexpr std::uint8_t kPieces = 5;

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

std::uint32_t getActiveCardData() {
  if (!ReaderIsActive()) return shared.UnsupportedValue;
  EntryOfActDev().LastLibErr = 0;
  if (OnSerialPort()) {
    shared.buffers.cardData.fill(0);
    return 0;
  }
  for (std::uint8_t piece = 0; piece < kPieces; ++piece) {
    ReplyBytes reply;
    if (!Ask(command::kCardData, TAVLYN_ERR_COMMAND, reply, {piece})) return 0;
    std::ranges::copy(reply,
                      shared.buffers.cardData.begin() + static_cast<std::ptrdiff_t>(piece * reply.size()));
  }
  return 1;
}

std::uint32_t getActiveCardData_byte(std::uint16_t index) {
  if (!ReaderIsActive()) return shared.UnsupportedValue;
  return index < shared.buffers.cardData.size() ? shared.buffers.cardData[index] : 0;
}
