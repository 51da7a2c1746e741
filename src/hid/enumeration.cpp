#include "hid/enumeration.h"

#include "core/lock.h"
#include "core/state.h"
#include "core/trace.h"
#include "hid/vidpid_table.h"
#include "links/link_socket.h"

namespace tavlyn {
namespace {

constexpr int kMostInterfaces = 127;
// A device with this product ID is ours in every search, whatever its vendor.
constexpr std::uint16_t kAnyVendorPid = 0x104;
// The collection of a report-ID-1 device that takes feature reports; its others are keyboards.
constexpr platform::HidUsage kVendorCollection{0xFFA0, 0xA000};

platform::HidSystem& Hid() { return platform::TheHost().hid; }

bool MatchesPair(platform::HidIds ids, platform::HidIds pair) {
  return SameIds(ids, pair) || ids.pid == kAnyVendorPid;
}

enum class TableMatch { kNo, kYes, kUnreadable };

// Walks the rows that hold the device's pair; the last one looked at is left in row.
TableMatch MatchTable(platform::Handle device, platform::HidIds ids, std::int32_t& row) {
  for (std::int32_t at = FindVidPidRow(ids, 0); at >= 0; at = FindVidPidRow(ids, at + 1)) {
    LogLine("UsbDriver_IsDevOurs", "Connected Device Vendor ID: %d", ids.vid);
    LogLine("UsbDriver_IsDevOurs", "Connected Device Product ID: %d", ids.pid);
    platform::UsageMatch usage = platform::UsageMatch::kYes;
    if (SameIds(ids, kReportId1Pair)) usage = Hid().TopUsage(device, kVendorCollection);
    if (usage == platform::UsageMatch::kUnreadable) return TableMatch::kUnreadable;
    row = at;
    if (usage == platform::UsageMatch::kYes) return TableMatch::kYes;
  }
  return TableMatch::kNo;
}

}  // namespace

bool EnumerateHid(const UsbIdentity& identity, HidCallback callback) {
  std::int32_t row = -1;
  if (!Hid().BeginWalk(identity.listedAs)) return false;
  for (int index = 0; index < kMostInterfaces; ++index) {
    const char* path = nullptr;
    const platform::WalkStep step = Hid().Member(index, path);
    if (step == platform::WalkStep::kEnd) break;
    if (step == platform::WalkStep::kSkip) continue;
    Guarded(false, [&] {
      if (UsbDriver_IsDevOurs(path, identity, &row)) callback(path, row);
      return true;
    });
  }
  Hid().EndWalk();
  return true;
}

bool UsbDriver_IsDevOurs(const char* path, const UsbIdentity& identity, std::int32_t* row) {
  if (path == nullptr) return false;
  platform::HidIds listed;
  if (Hid().ListedIds(path, listed) && !MatchesPair(listed, identity.pair) &&
      !(identity.byVidPidTable && FindVidPidRow(listed, 0) >= 0)) {
    if (identity.byVidPidTable && row != nullptr) *row = -1;
    return false;
  }
  const platform::Handle device = Hid().Open(path, platform::OpenMode::kShared);
  if (device == platform::kNoHandle) return false;
  const platform::HidIds ids = Hid().Attributes(device);
  bool ours = MatchesPair(ids, identity.pair);
  std::int32_t matched = -1;
  if (identity.byVidPidTable && !ours) {
    const TableMatch match = MatchTable(device, ids, matched);
    if (match == TableMatch::kUnreadable) {
      // Deliberately not closed here.
      if (row != nullptr) *row = matched;
      return false;
    }
    ours = match == TableMatch::kYes;
  }
  if (identity.byVidPidTable && row != nullptr) *row = matched;
  Hid().Close(device);
  return ours;
}

platform::Handle OpenDevice(const char* path) { return Hid().Open(path, platform::OpenMode::kShared); }

platform::Handle OpenDeviceOverlapped(const char* path) {
  return Hid().Open(path, platform::OpenMode::kOverlapped);
}

void CloseDevice(platform::Handle device) {
  LogLine("UsbDriver_Close", "ENTER");
  // The flag stays: what is behind the tunnel is gone, and the next connect clears it.
  if (shared.link.TunnelLink != 0) LinkClose();
  LogLine("UsbDriver_Close", "EXIT");
  Hid().Close(device);
}

}  // namespace tavlyn
