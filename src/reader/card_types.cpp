#include "reader/card_types.h"

#include <algorithm>
#include <array>

#include "api.h"
#include "core/openings.h"
#include "core/pause.h"
#include "links/serial_port.h"
#include "reader/fa_frames.h"
#include "reader/transactions.h"

namespace tavlyn {
namespace {

constexpr int kPages = 256;
constexpr std::size_t kTypesOnPage = 4;
static_assert(kPages * kTypesOnPage <= kCardTypes);
// Bits 4 to 7 are no part of a type's identity.
constexpr unsigned kIdentityBits = 0xFF0F;

enum class Page : std::uint8_t { kRead, kSkipped, kEnd };

Page PageByReports(std::uint8_t number, ReplyBytes& page) {
  Report reply{};
  const Xfer fetched = FeatureXfer(command::kCardTypePage, reply, number);
  std::copy_n(reply.begin() + 1, page.size(), page.begin());
  if (fetched == Xfer::kNotSent) return Page::kSkipped;
  return fetched == Xfer::kDone ? Page::kRead : Page::kEnd;
}

// A transaction of its own: echo, two bytes, the page and the status come in one read, and the pauses differ.
Page PageByFa(std::uint8_t number, ReplyBytes& page) {
  constexpr std::size_t kReplyBytes = 13;
  constexpr std::size_t kPageAt = 3;
  const FaFrame frame(command::kCardTypePage, number, 0);
  StatusWord = 0;
  SerialPort* port = EntryOfActDev().pSerialPort;
  if (port == nullptr || !port->IsOpen()) return Page::kEnd;
  port->Flush();
  if (port->IsOverTcp()) port->ClearInput();
  constexpr std::array<std::uint8_t, 1> kClass = {0xFA};
  if (static_cast<std::int32_t>(port->Write(kClass)) < 1) return Page::kEnd;
  if (!port->IsOverTcp()) Pause(50);
  if (static_cast<std::int32_t>(port->Write(std::span(frame.header).first(4))) < 4) return Page::kEnd;
  Pause(10);
  std::array<std::uint8_t, kReplyBytes> reply{};
  if (static_cast<std::int32_t>(port->Read(reply)) < static_cast<std::int32_t>(reply.size()))
    return Page::kEnd;
  if (reply[0] != frame.header[0]) return Page::kEnd;
  std::copy_n(reply.begin() + kPageAt, page.size(), page.begin());
  StatusWord = static_cast<std::uint32_t>(reply[11]) << 8 | reply[12];
  const bool good = StatusWord == 0x9000;
  Pause(good ? 2 : 10);
  return good ? Page::kRead : Page::kEnd;
}

}  // namespace

void ReadCardTypeList() {
  if (ActDev < 0) return;
  tsDevEntry& entry = EntryOfActDev();
  entry.CardTypeList.fill(0);
  std::size_t count = 0;
  for (int number = 0; number < kPages; ++number) {
    ReplyBytes page;
    const auto index = static_cast<std::uint8_t>(number);
    const Page result = OnSerialPort() ? PageByFa(index, page) : PageByReports(index, page);
    if (result == Page::kEnd) return;
    if (result == Page::kSkipped) continue;
    for (std::size_t at = 0; at < kTypesOnPage; ++at) {
      const unsigned type = page[2 * at] | static_cast<unsigned>(page[2 * at + 1]) << 8;
      if (type == 0) return;
      // A type that has only the bits dropped here is stored as 0 and so ends the list for its readers.
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
  if (OnSerialPort()) {
    const bool first = Tell(command::kWriteCardType, data);
    return first || Tell(command::kWriteCardType, data);
  }
  if (entry.PlusState != kPlusReader) return false;
  if (!Tell(command::kWriteCardType, data)) {
    entry.LastLibErr |= TAVLYN_ERR_CONFIG_READ;
    return false;
  }
  Pause(kAfterWrite);
  return true;
}

}  // namespace tavlyn

using namespace tavlyn;

std::int32_t GetCardType() { return PlusReaderIsActive() ? EntryOfActDev().ActiveSlot().CardType : -1; }

std::int32_t GetCardPriority() {
  return PlusReaderIsActive() ? static_cast<std::int16_t>(EntryOfActDev().ActiveSlot().CardPriority) : -1;
}

std::uint32_t IsCardTypeInList(std::int16_t type) {
  const auto wanted = static_cast<std::uint16_t>(static_cast<unsigned>(type) & kIdentityBits);
  if ((static_cast<std::uint16_t>(type) & 0xFF0FU) == 0) return 1;
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
