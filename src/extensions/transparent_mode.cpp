// Transparent mode: asking for it and switching it, for the moment or permanently.
#include "api.h"
#include "core/openings.h"
#include "core/trace.h"
#include "extensions/exchange.h"

namespace tavlyn {
namespace {

constexpr std::uint16_t kModeOff = 0;  // or the operation failed
constexpr std::uint16_t kModeOn = 1;   // or the operation succeeded
constexpr std::uint16_t kModeUnsupported = 2;

constexpr std::uint8_t kSwitchedOff = 0;
constexpr std::uint8_t kSwitchedOn = 1;
constexpr std::uint32_t kPermanently = 1;

std::uint16_t Switch(const char* tag, std::uint8_t mode, std::uint32_t commit) {
  if (!ReaderIsActive()) return kModeOff;
  EntryOfActDev().LastLibErr = 0;
  ReportPair pair;
  if (!ExchangePair(reader::command::kSetMode, pair, mode)) {
    Fail(tag, TAVLYN_ERR_SECURE);
    return kModeOff;
  }
  if (pair.reply[1] == 0) return kModeUnsupported;
  const bool switched = pair.reply[3] == mode;
  // Sent whether the reader has switched or not; only the result shows that it was lost.
  const bool kept = commit != kPermanently || SendReport(reader::CommandReport(reader::command::kCommit));
  return switched && kept ? kModeOn : kModeOff;
}

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

std::uint16_t CheckTransparentMode() {
  if (!ReaderIsActive()) return kModeOff;
  EntryOfActDev().LastLibErr = 0;
  ReportPair pair;
  if (!ExchangePair(reader::command::kAskMode, pair)) {
    Fail("TransparentMode::CheckTransparentMode", TAVLYN_ERR_SECURE);
    return kModeOff;
  }
  if (pair.reply[1] == 0) return kModeUnsupported;
  return pair.reply[3] == kSwitchedOn ? kModeOn : kModeOff;
}

std::uint16_t EnableTransparentMode(std::uint32_t commit) {
  return Switch("TransparentMode::EnableTransparentMode", kSwitchedOn, commit);
}

std::uint16_t DisableTransparentMode(std::uint32_t commit) {
  return Switch("TransparentMode::DisableTransparentMode", kSwitchedOff, commit);
}
