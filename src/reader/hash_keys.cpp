// The two keys of 16 bytes, which a write sends to readers with extended fields when separated fields have
// changed, and the flag for enhanced security, with which it sends both in any case.
#include <algorithm>
#include <array>
#include <span>

#include "api.h"
#include "core/openings.h"
#include "core/state.h"
#include "core/wipe.h"
#include "reader/configuration.h"
#include "reader/exchange.h"

namespace tavlyn::reader {
namespace {

constexpr std::array<std::uint8_t, 2> kSelectors = {1, 17};
constexpr std::size_t kReportBytes = 8;
constexpr std::uint8_t kHalves = 2;

void SendKey(std::span<const std::uint8_t, 16> key, std::uint8_t selector) {
  tsDevEntry& entry = EntryOfActDev();
  if (OnSerialPort()) {
    if (Tell(command::kWriteHashKey, key, {0, selector}) != Xfer::kDone) entry.bSepFldCapable = 0;
    return;
  }
  const auto send = [&](const Report& report, std::size_t shown) {
    if (SendReport(report, shown)) return;
    entry.LastLibErr |= TAVLYN_ERR_CONFIG_WRITE;
    entry.bSepFldCapable = 0;
  };
  for (std::uint8_t half = 0; half < kHalves; ++half) {
    Wiped<Report> data{};
    std::ranges::copy(key.subspan(half * kReportBytes, kReportBytes), data.begin() + 1);
    send(CommandReport(command::kWriteHashKey, {half, selector}), kAllShown);
    send(data, kNoneShown);
  }
}

constexpr std::uint8_t kEnhanced = 0x80;

// In slot 0, whichever configuration is active.
std::uint8_t& EnhanceByte() { return EntryOfActDev().CfgSlot[0].sFldSepData[kEnhanceSecurityAt]; }

}  // namespace

void SendHashKeys(const tsCfgSlot& slot) {
  for (std::size_t number = 0; number < kSelectors.size(); ++number) {
    const auto& key = slot.HashKeyData[number];
    if (shared.reader.EnhanceSecurityOn != 0 || key.front() != 0) SendKey(key, kSelectors[number]);
  }
}

}  // namespace tavlyn::reader

using namespace tavlyn;
using namespace tavlyn::reader;

std::uint32_t SetHashKeyData(const std::uint8_t* data) {
  if (!ReaderIsActive()) return shared.UnsupportedValue;
  if (data == nullptr) return 0;
  tsCfgSlot& slot = EntryOfActDev().ActiveSlot();
  for (auto& key : slot.HashKeyData) {
    std::copy_n(data, key.size(), key.begin());
    data += key.size();
  }
  slot.bDirtySep = 1;
  EntryOfActDev().LastLibErr = 0;
  return 1;
}

std::uint32_t GetEnhanceSecurityFlag() {
  if (!ReaderIsActive()) return UnsupportedSigned();
  return EnhanceByte() & kEnhanced;
}

void SetEnhanceSecurityFlag(std::uint32_t on) {
  if (!ReaderIsActive()) return;
  EnhanceByte() = on != 0 ? kEnhanced : std::uint8_t{0};
  EntryOfActDev().CfgSlot[0].bDirtySep = 1;
}
