#include "reader/hash_keys.h"

#include <algorithm>
#include <span>

#include "core/state.h"
#include "core/wipe.h"
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
  const auto send = [&](const Report& report) {
    if (SendReport(report)) return;
    entry.LastLibErr |= TAVLYN_ERR_CONFIG_WRITE;
    entry.bSepFldCapable = 0;
  };
  for (std::uint8_t half = 0; half < kHalves; ++half) {
    Wiped<Report> data{};
    std::ranges::copy(key.subspan(half * kReportBytes, kReportBytes), data.begin() + 1);
    send(CommandReport(command::kWriteHashKey, {half, selector}));
    send(data);
  }
}

}  // namespace

void SendHashKeys(const tsCfgSlot& slot) {
  for (std::size_t number = 0; number < kSelectors.size(); ++number) {
    const auto& key = slot.HashKeyData[number];
    if (shared.reader.EnhanceSecurityOn != 0 || key.front() != 0) SendKey(key, kSelectors[number]);
  }
}

}  // namespace tavlyn::reader
