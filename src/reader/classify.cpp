#include "reader/classify.h"

#include <algorithm>

#include "core/state.h"
#include "reader/fa_frames.h"
#include "reader/transactions.h"

namespace tavlyn {
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

bool ClassifyByReports(tsDevEntry& entry) {
  Report reply;
  // A lost command means plain, a lost reply means not known: a plain reader refuses the command itself.
  const Xfer queried = FeatureXfer(command::kQueryConfig, reply);
  if (queried != Xfer::kDone || reply[1] != 0x89) {
    entry.PlusState = queried == Xfer::kNotSent ? kPlainReader : kPlusUnknown;
    return false;
  }
  const unsigned highest = reply[4] - 1U;
  if (highest > kHighestConfig) {
    TakeConfigs(entry, 0, 0);
    entry.PlusState = kPlusUnknown;
    return false;
  }
  TakeConfigs(entry, static_cast<std::uint8_t>(highest), reply[3]);
  if (FeatureXfer(command::kReadCardType, reply) != Xfer::kDone) {
    entry.LastLibErr |= TAVLYN_ERR_CONFIG_READ;
    return false;
  }
  TakeCardType(entry, reply[2], reply[3], reply[4]);
  entry.PlusState = kPlusReader;
  return true;
}

bool ClassifyByFa(tsDevEntry& entry) {
  FaFrame frame(command::kQueryConfig, 0, 0);
  const auto& d = frame.data;
  if (!FaXferTwice(command::kQueryConfig, frame) || d[0] != 1 || d[1] > kHighestConfig || d[3] != 0) {
    entry.PlusState = kPlainReader;
    return false;
  }
  const unsigned highest = d[2] - 1U;
  // Deliberately counts as a plus reader with nothing learnt: serial readers report 0 while they start.
  if (highest > kHighestConfig) return true;
  TakeConfigs(entry, static_cast<std::uint8_t>(highest), d[1]);
  TakeCardType(entry, d[4], d[5], d[6]);
  entry.PlusState = kPlusReader;
  return true;
}

}  // namespace

bool ClassifyReader() {
  tsDevEntry& entry = EntryOfActDev();
  entry.MaxConfig = 0;
  if (entry.PlusState == kPlainReader) return false;
  return OnSerialPort() ? ClassifyByFa(entry) : ClassifyByReports(entry);
}

bool SelectConfig(std::uint8_t n) {
  tsDevEntry& entry = EntryOfActDev();
  if (entry.PlusState != kPlusReader) return false;
  entry.ActConfig = n;
  if (OnSerialPort()) {
    FaFrame frame(command::kSelectConfig, n, 0);
    return FaXferTwice(command::kSelectConfig, frame);
  }
  Report reply;
  return FeatureXfer(command::kSelectConfig, reply, n) == Xfer::kDone && reply[1] == 0x89 && reply[2] == 0x81;
}

bool PingReader() {
  if (OnSerialPort()) {
    FaFrame frame(command::kPing, 0, 0);
    return FaXferTwice(command::kPing, frame);
  }
  Report reply;
  return FeatureXfer(command::kPing, reply) == Xfer::kDone;
}

}  // namespace tavlyn
