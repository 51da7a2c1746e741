#include "reader/device_texts.h"

#include <algorithm>
#include <span>

#include "api.h"
#include "core/openings.h"
#include "core/state.h"
#include "core/trace.h"
#include "reader/configuration.h"
#include "reader/exchange.h"

namespace tavlyn::reader {
namespace {

constexpr std::size_t kShortText = 3 * kTextPiece;
constexpr std::uint8_t kEsnPieces = 4;

const char* GetReaderText(Text number) {
  if (shared.ActDev < 0 || shared.ActDev >= kTableEntries) return "";
  shared.buffers.readerText.fill('\0');
  const std::span<char> text = std::span(shared.buffers.readerText).first(kShortText);
  return FetchText(command::kDeviceText, number, TAVLYN_ERR_CONFIG_READ, text)
             ? shared.buffers.readerText.data()
             : "";
}

bool FetchEsn() {
  shared.buffers.readerEsn.fill(0);
  EntryOfActDev().LastLibErr = 0;
  for (std::uint8_t piece = 0; piece < kEsnPieces; ++piece) {
    ReplyBytes reply;
    if (!Ask(command::kEsn, TAVLYN_ERR_COMMAND, reply, {piece})) return false;
    std::ranges::copy(reply, shared.buffers.readerEsn.begin() + piece * kTextPiece);
  }
  return true;
}

}  // namespace

bool FetchText(const Command& command, Text number, std::uint32_t reportError, std::span<char> text) {
  for (std::size_t piece = 0; piece < text.size() / kTextPiece; ++piece) {
    ReplyBytes reply;
    const auto index = static_cast<std::uint8_t>(piece);
    if (!Ask(command, reportError, reply, {static_cast<std::uint8_t>(number), index})) return false;
    std::ranges::copy(reply, text.subspan(piece * kTextPiece).begin());
  }
  return true;
}

}  // namespace tavlyn::reader

using namespace tavlyn;
using namespace tavlyn::reader;

const char* GetSerialNumber() { return GetReaderText(Text::kSerialNumber); }
const char* GetPlatformType() { return GetReaderText(Text::kPlatform); }
const char* GetBuildDate() { return GetReaderText(Text::kBuildDate); }
const char* GetCopyrightInfo() { return GetReaderText(Text::kCopyright); }
const char* GetCPUInfo() { return GetReaderText(Text::kCpu); }

const std::uint8_t* getESN() {
  if (!ReaderIsActive() || EntryOfActDev().LinkKind != kByReports || !IsFastStoreReader()) return nullptr;
  if (FetchEsn()) return shared.buffers.readerEsn.data();
  LogFailure("tavlyn_getESN");
  return nullptr;
}

const char* GetFullFWVersion() { return ActiveInRange() ? EntryOfActDev().FullFWVersion : nullptr; }
const char* GetFWFilename() { return ActiveInRange() ? EntryOfActDev().FWFilename : nullptr; }
const char* getPartNumberString() { return ActiveInRange() ? EntryOfActDev().PartNumber : nullptr; }
