// The card types that a plus reader knows, and the type of each configuration.
#include <algorithm>

#include "api.h"
#include "core/openings.h"
#include "core/pause.h"
#include "reader/configuration.h"
#include "reader/exchange.h"

namespace tavlyn::reader {
namespace {

constexpr int kPages = 256;
constexpr std::size_t kTypesOnPage = 4;
static_assert(kPages * kTypesOnPage <= kCardTypes);
// Bits 4 to 7 do not identify the type.
constexpr unsigned kIdentityBits = 0xFF0F;

}  // namespace

void ReadCardTypeList() {
  if (shared.ActDev < 0) return;
  tsDevEntry& entry = EntryOfActDev();
  entry.CardTypeList.fill(0);
  std::size_t count = 0;
  for (int number = 0; number < kPages; ++number) {
    const Outcome page = Exchange(command::kCardTypePage, {static_cast<std::uint8_t>(number)});
    if (page.xfer == Xfer::kNotSent) continue;
    if (page.xfer != Xfer::kDone) return;
    for (std::size_t at = 0; at < kTypesOnPage; ++at) {
      const unsigned type = page.reply[2 * at] | static_cast<unsigned>(page.reply[2 * at + 1]) << 8;
      if (type == 0) return;
      // A type with only the bits dropped here is stored as 0, which ends the list for whoever reads it.
      entry.CardTypeList[count++] = static_cast<std::uint16_t>(type & kIdentityBits);
    }
  }
}

bool WriteCardType() {
  constexpr std::uint32_t kAfterWrite = 10;
  tsDevEntry& entry = EntryOfActDev();
  const tsCfgSlot& slot = entry.ActiveSlot();
  const ReplyBytes data = {0, static_cast<std::uint8_t>(slot.CardType),
                           static_cast<std::uint8_t>(slot.CardType >> 8),
                           static_cast<std::uint8_t>(slot.CardPriority != 0 ? 1 : 0)};
  // Serial readers get this whether or not they are known to be plus readers.
  if (OnSerialPort()) return Tell(command::kWriteCardType, data) == Xfer::kDone;
  if (entry.PlusState != kPlusReader) return false;
  if (Tell(command::kWriteCardType, data) != Xfer::kDone) {
    entry.LastLibErr |= TAVLYN_ERR_CONFIG_READ;
    return false;
  }
  Pause(kAfterWrite);
  return true;
}

}  // namespace tavlyn::reader

using namespace tavlyn;
using namespace tavlyn::reader;

std::int32_t GetCardType() { return PlusReaderIsActive() ? EntryOfActDev().ActiveSlot().CardType : -1; }

std::int32_t GetCardPriority() {
  return PlusReaderIsActive() ? static_cast<std::int16_t>(EntryOfActDev().ActiveSlot().CardPriority) : -1;
}

std::uint32_t IsCardTypeInList(std::int16_t type) {
  const auto wanted = static_cast<std::uint16_t>(static_cast<unsigned>(type) & kIdentityBits);
  if (wanted == 0) return 1;
  if (!ReaderIsActive()) return 0;
  const auto& list = EntryOfActDev().CardTypeList;
  if (list.front() == 0) return 1;
  return std::ranges::find(list, wanted) != list.end() ? 1 : 0;
}

std::uint32_t SetCardTypePriority(std::uint16_t type, std::int16_t priority) {
  if (!PlusReaderIsActive()) return 0;
  tsCfgSlot& slot = EntryOfActDev().ActiveSlot();
  slot.CardType = type;
  slot.CardPriority = priority != 0 ? 1 : 0;
  return 1;
}
