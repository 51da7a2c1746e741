#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include "core/openings.h"
#include "core/trace.h"
#include "reader/ascii.h"
#include "reader/configuration.h"
#include "reader/device_texts.h"
#include "reader/exchange.h"
#include "reader/fa_frames.h"
#include "reader/layout.h"
#include "reader/product.h"

namespace tavlyn::reader {
namespace {

constexpr const char* kReadTag = "tavlyn_ReadCfgOneConfig";

// Readers do not have a serial number word; programs expect this value.
constexpr std::uint32_t kNoSerialNumber = 65535;

bool ReadIdentity(tsDevEntry& entry) {
  ReplyBytes id;
  if (!Ask(command::kIdentity, TAVLYN_ERR_CONFIG_READ, id)) {
    entry.LastLibErr |= TAVLYN_ERR_CONFIG_READ;
    LogErrorCode(kReadTag);
    return false;
  }
  entry.LUID = static_cast<std::uint16_t>(id[1] << 8 | id[0]);
  entry.DID = static_cast<std::uint16_t>(id[3] << 8 | id[2]);
  entry.SN = kNoSerialNumber;
  return true;
}

bool ReadBlock(BlockNumber number, tsCfgSlot& slot) {
  const Outcome block = Exchange(command::kReadBlock, {number});
  if (block.xfer == Xfer::kDone) {
    TakeBlock(number, block.reply, slot, EntryOfActDev().LinkKind == kByReports);
    return true;
  }
  if (ReportLost(block.xfer)) {
    EntryOfActDev().LastLibErr |= TAVLYN_ERR_CONFIG_READ;
    LogFailure(kReadTag);
  } else if (number == kFormatBlock || number == kExtensionBlock) {
    // Over a serial link the other blocks deliberately fail without a log line.
    LogLine(kReadTag, kFailed);
  }
  return false;
}

// Room for all eighteen pages that a reader may announce; only the first 128 bytes count.
constexpr std::uint8_t kSepPages = 18;
using SepBuffer = std::array<std::uint8_t, kSepPages * kSepPageBytes>;

bool ReadSepByReports(tsDevEntry& entry, SepBuffer& buffer) {
  constexpr std::uint8_t kShortFormPages = 12;
  std::uint8_t pages = kShortFormPages;
  for (std::uint8_t page = 0; page < kSepPages; ++page) {
    Outcome fetched = Exchange(command::kReadSepFields, {page});
    if (ReportLost(fetched.xfer)) entry.LastLibErr |= TAVLYN_ERR_CONFIG_READ;
    if (fetched.xfer == Xfer::kNotSent) {
      LogFailure(kReadTag);
      return false;
    }
    if (fetched.xfer == Xfer::kNoReply) {
      LogErrorCode(kReadTag);
      fetched.reply.fill(0);
    }
    const ReplyBytes& bytes = fetched.reply;
    if (page == 0) {
      if (bytes[0] == 0 || bytes[0] == 0xFF) return true;
      if (bytes[0] != kSepFldUnset) pages = bytes[3];
    }
    std::ranges::copy(bytes, buffer.begin() + page * kSepPageBytes);
    if (page + 1 >= pages) break;
  }
  return true;
}

void ReadSepByFa(tsDevEntry& entry, const tsCfgSlot& slot, SepBuffer& buffer) {
  const Command& read = HasExtendedFields(slot) ? command::kReadExtSep : command::kReadSepFields;
  FaFrame head(read, {kSepPageBytes});
  if (!FaXfer(read, head)) {
    entry.bSepFldCapable = 0;
    return;
  }
  const std::size_t length = std::min(head.data[3] * kSepPageBytes, kSepFldBytes);
  FaFrame all(read, {static_cast<std::uint8_t>(length)});
  if (FaXfer(read, all)) std::copy_n(all.data.begin(), length, buffer.begin());
}

// False only when the whole read has failed. For a reader without such data every read zeroes the field.
bool ReadSepFields(tsDevEntry& entry, tsCfgSlot& slot) {
  SepBuffer buffer{};
  if (entry.bSepFldCapable != 0) {
    if (OnSerialPort())
      ReadSepByFa(entry, slot, buffer);
    else if (!ReadSepByReports(entry, buffer))
      return false;
  }
  std::copy_n(buffer.begin(), kSepFldBytes, slot.sFldSepData.begin());
  // Always taken from configuration 0, whichever was read.
  shared.reader.EnhanceSecurityOn = entry.CfgSlot[0].sFldSepData[kEnhanceSecurityAt] >> 7;
  return true;
}

template <std::size_t kSize>
void KeepText(std::span<const char> text, char (&field)[kSize]) {
  const auto length = static_cast<std::size_t>(std::ranges::find(text, '\0') - text.begin());
  std::memset(field, 0, kSize);
  std::copy_n(text.begin(), std::min(length, kSize - 1), field);
}

// None of these can fail the read; an error bit that they set stays although the read returns 1.
void ReadTexts(tsDevEntry& entry) {
  std::array<char, 8 * kTextPiece> filename{};
  entry.LastLibErr = 0;
  const bool named = FetchText(command::kDeviceText, Text::kFirmwareFile, TAVLYN_ERR_FW_FILENAME, filename);
  KeepText(named ? std::span<const char>(filename) : std::span<const char>(), entry.FWFilename);

  std::array<char, 3 * kTextPiece> version{};
  entry.LastLibErr = 0;
  const bool versioned =
      FetchText(command::kDeviceText, Text::kFullVersion, TAVLYN_ERR_FULL_FW_VERSION, version);
  KeepText(versioned ? std::span<const char>(version) : std::span<const char>(), entry.FullFWVersion);

  if (entry.bPartNumberPending == 0) return;
  std::array<char, 3 * kTextPiece> model{};
  if (!FetchText(command::kModelNumber, Text::kModelNumber, TAVLYN_ERR_CONFIG_READ, model)) {
    entry.bPartNumberPending = 0;
    return;
  }
  KeepText(model, entry.PartNumber);
  LogLine(kReadTag, "Model Number of Device is : %s", entry.PartNumber);
}

bool ReadOneConfig() {
  if (InAscii()) return AsciiReadConfig() != 0;
  tsDevEntry& entry = EntryOfActDev();
  entry.LastLibErr = 0;
  tsCfgSlot& slot = entry.ActiveSlot();
  if (!ReadIdentity(entry)) return false;
  for (const BlockNumber number : {kFormatBlock, kTimeBlock, kDisplayBlock, kExtensionBlock}) {
    if (!ReadBlock(number, slot)) return false;
  }
  if (!ReadSepFields(entry, slot)) return false;
  ReadTexts(entry);
  Sanitize(slot.record);
  slot.bCfgLoaded = 1;
  // bDirtyDisp stays: outputs that were set for storing are not undone by a read.
  slot.bDirtyFmt = slot.bDirtyTime = slot.bDirtyExt = slot.bDirtySep = 0;
  entry.bLUIDDirty = 0;
  return true;
}

// From the highest configuration down, so that number 0 is read last. After a failure nothing more is read,
// but the selections go on, so that the reader ends up where it was.
bool ReadAllConfigs(tsDevEntry& entry) {
  const std::uint8_t remembered = entry.ActConfig;
  bool ok = true;
  for (int config = HighestConfig(); config >= 0; --config) {
    const auto index = static_cast<std::uint8_t>(config);
    SelectConfig(index);
    if (!ok) continue;
    UseConfig(index);
    Classify();
    ok = ReadOneConfig();
  }
  SelectConfig(remembered);
  return ok;
}

}  // namespace

bool SelectConfig(std::uint8_t n) {
  tsDevEntry& entry = EntryOfActDev();
  if (entry.PlusState != kPlusReader) return false;
  entry.ActConfig = n;
  return Exchange(command::kSelectConfig, {n}).xfer == Xfer::kDone;
}

std::uint32_t ReadCfg() {
  tsDevEntry& entry = EntryOfActDev();
  const bool ok = entry.PlusState == kPlainReader ? ReadOneConfig() : ReadAllConfigs(entry);
  if (entry.PlusState == kPlusReader) ReadCardTypeList();
  return ok ? 1 : 0;
}

}  // namespace tavlyn::reader
