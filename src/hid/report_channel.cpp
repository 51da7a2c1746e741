#include "hid/report_channel.h"

#include <algorithm>

#include "core/pause.h"
#include "core/state.h"
#include "core/wipe.h"
#include "hid/text_frames.h"

namespace tavlyn {
namespace {

constexpr std::int32_t kUsualPayload = 8;
constexpr std::int32_t kLongestReport = 24;
constexpr int kWriteTries = 6;
constexpr std::uint32_t kAfterFailedWrite = 80;

// Deliberately admits dev equal to DevCnt: a search talks to a device before it counts it.
bool IndexIsGood(std::int32_t dev) { return dev >= 0 && dev <= shared.DevCnt && dev < kTableEntries; }

tsDevEntry& Touch(std::int32_t dev) {
  tsDevEntry& entry = DevTable[dev];
  entry.LastTxTick = platform::TheHost().clock.Tick();
  return entry;
}

std::uint8_t ReportIdOf(const tsDevEntry& entry) { return entry.bReportId1 != 0 ? 1 : 0; }

bool Fetch(std::int32_t n, std::int32_t dev, std::span<std::uint8_t> report) {
  if (shared.link.TunnelLink != 0) return ReadTextFrame(n, report.data());
  const tsDevEntry& entry = Touch(dev);
  report[0] = ReportIdOf(entry);
  return platform::TheHost().hid.GetFeature(entry.hDev, report);
}

}  // namespace

bool ReadFeatureReport(std::int32_t n, std::int32_t dev, std::uint8_t* buffer, std::size_t shown) {
  // Deliberately clears n of the n + 1 bytes, and does so before checking the index.
  if (n > 0) std::fill_n(buffer, n, std::uint8_t{0});
  if (!IndexIsGood(dev) || n < 0) return false;
  const std::span<std::uint8_t> report(buffer, static_cast<std::size_t>(n) + 1);
  const bool done = Fetch(n, dev, report);
  LogWire(DevTable[dev].ProductKind, Direction::kReceived, report.first(done ? report.size() : 0), shown);
  return done;
}

bool WriteFeatureReport(std::int32_t n, std::int32_t dev, const std::uint8_t* buffer, std::size_t shown) {
  if (!IndexIsGood(dev)) return false;
  const std::size_t bytes = n >= 0 && n <= kLongestReport ? static_cast<std::size_t>(n) + 1 : 0;
  LogWire(DevTable[dev].ProductKind, Direction::kSent, {buffer, bytes}, shown);
  if (shared.link.TunnelLink != 0) return WriteTextFrame(n, buffer);
  tsDevEntry& entry = Touch(dev);
  if (n < -1 || n > kLongestReport) return false;
  const auto length = static_cast<std::size_t>(n) + 1;
  Wiped<std::array<std::uint8_t, kLongestReport + 1>> report;
  std::copy_n(buffer, length, report.begin());
  report[0] = ReportIdOf(entry);
  platform::Host& host = platform::TheHost();
  for (int attempt = 0; attempt < kWriteTries; ++attempt) {
    if (host.hid.SetFeature(entry.hDev, std::span(report).first(length))) return true;
    Pause(kAfterFailedWrite);
  }
  entry.LastLibErr = TAVLYN_ERR_WRITE_REPORT;
  return false;
}

bool SendReport(const Report& report, std::size_t shown) {
  return WriteFeatureReport(kUsualPayload, shared.ActDev, report.data(), shown);
}

bool FetchReport(Report& report) { return ReadFeatureReport(kUsualPayload, shared.ActDev, report.data()); }

bool ReadInputReport(platform::Handle device, std::span<std::uint8_t> buffer) {
  const platform::Drain drained = platform::TheHost().hid.DrainInput(device, buffer);
  // Always entry 0, whichever device is gone; programs look for it there.
  if (drained == platform::Drain::kGone) DevTable[0].LastLibErr |= TAVLYN_ERR_DEVICE_GONE;
  if (drained != platform::Drain::kDrained) return false;
  LogWire(EntryOfActDev().ProductKind, Direction::kReceived, buffer);
  return true;
}

}  // namespace tavlyn
