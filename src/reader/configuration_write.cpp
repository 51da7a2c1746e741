#include <algorithm>
#include <array>
#include <span>

#include "core/openings.h"
#include "core/pause.h"
#include "core/trace.h"
#include "core/wipe.h"
#include "reader/ascii.h"
#include "reader/configuration.h"
#include "reader/exchange.h"
#include "reader/layout.h"
#include "reader/outputs.h"
#include "reader/product.h"

namespace tavlyn::reader {
namespace {

constexpr const char* kWriteTag = "tavlyn_write_cfg";

// The reader must be left alone until it has stored what was committed.
constexpr std::uint32_t kFastStore = 20;
constexpr std::uint32_t kSlowStore = 1200;

// What was written, as bits of the commit command.
enum CommitBit : std::uint8_t {
  kCommitFormat = 0x01,
  kCommitTime = 0x02,
  kCommitDisplay = 0x04,
  kCommitExtension = 0x08,
  kCommitSepFields = 0x20,
  kCommitLuid = 0x80,
};

// Deliberately asks through the record's get, as programs would: that replaces the error word that earlier
// steps left, and a slot that was never read has no extended fields.
bool WritesExtendedFields(const tsCfgSlot& slot) {
  RecordWords words;
  return GetRecord(kTimeParms, words.data()) == 1 && HasExtendedFields(slot);
}

// A failure over reports sets an error bit and is logged; one over serial is not.
bool Checked(Xfer sent) {
  if (sent == Xfer::kNotSent) {
    EntryOfActDev().LastLibErr |= TAVLYN_ERR_CONFIG_WRITE;
    LogFailure(kWriteTag);
  }
  return sent == Xfer::kDone;
}

bool WriteBlock(BlockNumber number, const Block& block) {
  return Checked(Tell(command::kWriteBlock, block, {number}));
}

bool WriteLuid(const tsDevEntry& entry) {
  const std::array<std::uint8_t, 2> luid = {static_cast<std::uint8_t>(entry.LUID),
                                            static_cast<std::uint8_t>(entry.LUID >> 8)};
  return Checked(Tell(command::kWriteLuid, luid));
}

// The steps of a write up to the separated fields; adds what was sent to the mask.
bool WriteBlocks(tsDevEntry& entry, tsCfgSlot& slot, std::uint8_t& mask) {
  const auto written = [&](CommitBit bit) { mask = static_cast<std::uint8_t>(mask | bit); };
  if (entry.bLUIDDirty != 0) {
    if (!WriteLuid(entry)) return false;
    written(kCommitLuid);
  }
  if (slot.bDirtyFmt != 0) {
    if (!WriteBlock(kFormatBlock, BuildBlock(kFormatBlock, slot))) return false;
    written(kCommitFormat);
  }
  if (slot.bDirtyTime != 0) {
    if (!WriteBlock(kTimeBlock, BuildBlock(kTimeBlock, slot))) return false;
    written(kCommitTime);
  }
  if (slot.bDirtyDisp != 0) {
    if (!WriteDispBlock(slot)) return false;
    written(kCommitDisplay);
  }
  if (slot.bDirtyExt != 0) {
    if (!WriteBlock(kExtensionBlock, BuildBlock(kExtensionBlock, slot, WritesExtendedFields(slot))))
      return false;
    written(kCommitExtension);
  }
  return true;
}

// How many pages of separator data there are according to its own first bytes, and how many bytes of it a
// serial frame carries: none in the short form, which is not sent over serial.
struct SepExtent {
  std::uint8_t pages;
  std::size_t frameBytes;
};

SepExtent ExtentOf(const tsCfgSlot& slot) {
  constexpr std::uint8_t kShortFormPages = 12;
  if (slot.sFldSepData[0] == kSepFldUnset) return {kShortFormPages, 0};
  return {slot.sFldSepData[3], slot.sFldSepData[3] * kSepPageBytes};
}

void WriteSepByFa(tsDevEntry& entry, const tsCfgSlot& slot, std::size_t length) {
  // What the area does not hold comes from the keys.
  Wiped<std::array<std::uint8_t, 255>> bytes;
  length = std::min(length, bytes.size());
  for (std::size_t at = 0; at < length; ++at) bytes[at] = slot.SepByteAt(at);
  const Command& write = WritesExtendedFields(slot) ? command::kWriteExtSep : command::kWriteSepFields;
  const auto data = std::span<const std::uint8_t>(bytes).first(length);
  if (Tell(write, data, {static_cast<std::uint8_t>(length)}) != Xfer::kDone) entry.bSepFldCapable = 0;
}

void WriteSepByReports(tsDevEntry& entry, const tsCfgSlot& slot, std::uint8_t pages) {
  for (std::uint8_t page = 0; page < pages; ++page) {
    Wiped<Report> data{};
    for (std::size_t at = 0; at < kSepPageBytes; ++at)
      data[at + 1] = slot.SepByteAt(page * kSepPageBytes + at);
    // A page whose command was lost still gets its data report. Neither loss leaves an error word, because
    // WritesExtendedFields replaces it.
    if (!SendReport(CommandReport(command::kWriteSepFields, {page}))) entry.bSepFldCapable = 0;
    if (!SendReport(data, kNoneShown)) {
      entry.bSepFldCapable = 0;
      entry.bPartNumberPending = 0;
    }
  }
}

// False when the separator data claims more than fits; nothing is then committed, deliberately without a log
// line.
bool WriteSepFields(tsDevEntry& entry, const tsCfgSlot& slot, std::uint8_t& mask) {
  const SepExtent extent = ExtentOf(slot);
  if (extent.frameBytes > kSepFldBytes && entry.bSepFldCapable != 0) return false;
  if (slot.bDirtySep == 0) return true;
  if (OnSerialPort()) {
    WriteSepByFa(entry, slot, extent.frameBytes);
  } else {
    WriteSepByReports(entry, slot, extent.pages);
  }
  mask = static_cast<std::uint8_t>(mask | kCommitSepFields);
  if (WritesExtendedFields(slot)) SendHashKeys(slot);
  return true;
}

bool WriteOneConfig() {
  tsDevEntry& entry = EntryOfActDev();
  tsCfgSlot& slot = entry.ActiveSlot();
  entry.LastLibErr = 0;
  if (InAscii()) return AsciiWriteConfig() != 0;
  std::uint8_t mask = 0;
  if (!WriteBlocks(entry, slot, mask) || !WriteSepFields(entry, slot, mask)) return false;
  WriteCardType();
  if (!Checked(Fire(command::kCommit, {mask}))) return false;
  slot.bDirtyFmt = slot.bDirtyDisp = slot.bDirtyTime = slot.bDirtyExt = slot.bDirtySep = 0;
  entry.bLUIDDirty = 0;
  return true;
}

bool WriteAndWait() {
  const bool written = WriteOneConfig();
  Pause(IsFastStoreReader() ? kFastStore : kSlowStore);
  return written;
}

// After a failure the selections are still sent, the writes are not.
bool WriteAllConfigs(std::uint16_t highest) {
  const std::uint8_t remembered = EntryOfActDev().ActConfig;
  bool ok = true;
  for (int config = highest; config >= 0; --config) {
    const auto index = static_cast<std::uint8_t>(config);
    ok = SelectConfig(index) && ok;
    if (!ok) continue;
    UseConfig(index);
    // Deliberately sent here and once more before the commit.
    WriteCardType();
    ok = WriteAndWait();
  }
  SelectConfig(remembered);
  return ok;
}

}  // namespace

bool IsFastStoreReader() {
  const bool knowsVolume = !AskVolume().blank;
  // Readers with two or four configurations are fast whether they know the command or not.
  return knowsVolume || HighestConfig() == 1 || HighestConfig() == 3;
}

std::uint32_t WriteCfg() {
  const std::uint16_t highest = HighestConfig();
  return (highest == 0 ? WriteAndWait() : WriteAllConfigs(highest)) ? 1 : 0;
}

std::uint32_t ResetFactoryDflts() {
  constexpr const char* kResetTag = "tavlyn_ResetFactoryDflts";
  tsDevEntry& entry = EntryOfActDev();
  entry.LastLibErr = 0;
  if (InAscii()) {
    // The mirror stays as it is.
    AsciiReset();
    return 1;
  }
  if (const Xfer sent = Fire(command::kFactoryReset); sent != Xfer::kDone) {
    if (sent == Xfer::kNotSent) {
      entry.LastLibErr |= TAVLYN_ERR_RESET;
      LogErrorCode(kResetTag);
    }
    LogLine(kResetTag, kFailed);
    return 0;
  }
  Pause(kSlowStore);
  const std::uint32_t read = ReadCfg();
  LogLine(kResetTag, read != 0 ? kSuccess : kFailed);
  return read;
}

}  // namespace tavlyn::reader
