// Telling plain readers from plus readers.
#include <algorithm>

#include "core/state.h"
#include "reader/exchange.h"
#include "reader/product.h"

namespace tavlyn::reader {
namespace {

void TakeCardType(tsDevEntry& entry, std::uint8_t low, std::uint8_t high, std::uint8_t priority) {
  tsCfgSlot& slot = entry.ActiveSlot();
  slot.CardType = static_cast<std::uint16_t>(high << 8 | low);
  slot.CardPriority = priority & 1;
}

void TakeConfigs(tsDevEntry& entry, std::uint8_t highest, std::uint8_t active) {
  entry.MaxConfig = highest;
  entry.ActConfig = std::min(active, highest);
}

bool ClassifyByReports(tsDevEntry& entry, const Outcome& query) {
  // A plain reader refuses the command itself, so a lost command means plain and a lost reply means unknown.
  if (query.xfer != Xfer::kDone) {
    entry.PlusState = query.xfer == Xfer::kNotSent ? kPlainReader : kPlusUnknown;
    return false;
  }
  const unsigned highest = query.reply[1] - 1U;
  if (highest > kHighestConfig) {
    TakeConfigs(entry, 0, 0);
    entry.PlusState = kPlusUnknown;
    return false;
  }
  TakeConfigs(entry, static_cast<std::uint8_t>(highest), query.reply[0]);
  const Outcome type = Exchange(command::kReadCardType);
  if (type.xfer != Xfer::kDone) {
    entry.LastLibErr |= TAVLYN_ERR_CONFIG_READ;
    return false;
  }
  TakeCardType(entry, type.reply[0], type.reply[1], type.reply[2]);
  entry.PlusState = kPlusReader;
  return true;
}

bool ClassifyByFa(tsDevEntry& entry, const Outcome& query) {
  const ReplyBytes& reply = query.reply;
  if (query.xfer != Xfer::kDone || reply[0] > kHighestConfig || reply[2] != 0) {
    entry.PlusState = kPlainReader;
    return false;
  }
  const unsigned highest = reply[1] - 1U;
  // Deliberately a success although nothing was learnt: serial readers report 0 while they start.
  if (highest > kHighestConfig) return true;
  TakeConfigs(entry, static_cast<std::uint8_t>(highest), reply[0]);
  TakeCardType(entry, reply[3], reply[4], reply[5]);
  entry.PlusState = kPlusReader;
  return true;
}

}  // namespace

bool Classify() {
  tsDevEntry& entry = EntryOfActDev();
  entry.MaxConfig = 0;
  if (entry.PlusState == kPlainReader) return false;
  const Outcome query = Exchange(command::kQueryConfig);
  return OnSerialPort() ? ClassifyByFa(entry, query) : ClassifyByReports(entry, query);
}

}  // namespace tavlyn::reader
