// The words of a plus reader's firmware version.

#include "core/state.h"
#include "reader/exchange.h"
#include "reader/product.h"

namespace tavlyn::reader {
namespace {

std::uint32_t HighFirst(const std::uint8_t* bytes) {
  return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
         static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

// The word in a good reply. A reply that does not echo the request counts as 0 over reports, and over FA as
// 1, which does not end a read of all words.
std::uint32_t WordIn(const Outcome& outcome, std::uint32_t otherwise) {
  return outcome.xfer == Xfer::kDone ? HighFirst(outcome.reply.data()) : otherwise;
}

}  // namespace

std::uint32_t QueryFirmwareWord(std::int16_t cpu, std::int16_t index) {
  tsDevEntry& entry = EntryOfActDev();
  if (entry.PlusState != kPlusReader) return 0;
  const Outcome outcome =
      Exchange(command::kFirmwareWord, {static_cast<std::uint8_t>(cpu), static_cast<std::uint8_t>(index)});
  if (outcome.xfer == Xfer::kNoReply) entry.LastLibErr |= TAVLYN_ERR_COMMAND;
  if (outcome.xfer != Xfer::kDone && outcome.xfer != Xfer::kOther) return 0;
  if (OnSerialPort()) return WordIn(outcome, 1);
  const auto row = static_cast<std::uint16_t>(cpu) % kCpus;
  const auto column = static_cast<std::uint16_t>(index) % kFirmwareWords;
  return entry.FWVersion[row][column] = WordIn(outcome, 0);
}

std::uint32_t FirmwareVersion(std::uint16_t cpu, std::uint16_t index) {
  if (cpu >= kCpus || index >= kFirmwareWords || EntryOfActDev().PlusState != kPlusReader) return 0;
  return EntryOfActDev().FWVersion[cpu][index];
}

}  // namespace tavlyn::reader
