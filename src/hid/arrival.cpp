#include "hid/arrival.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "core/text.h"
#include "hid/enumeration.h"
#include "hid/vidpid_table.h"
#include "links/probe.h"

namespace tavlyn {
namespace {

// SearchErr of an arrival.
constexpr std::uint32_t kNotOurs = 10;
constexpr std::uint32_t kNotOpened = 11;

// On Windows a path begins with the pair; elsewhere the system is asked.
bool PathHasPair(const char* path, platform::HidIds pair) {
  std::array<char, 32> prefix{};
  const int length = std::snprintf(prefix.data(), prefix.size(), R"(\\?\HID#Vid_%04x&Pid_%04x)",
                                   static_cast<unsigned>(pair.vid), static_cast<unsigned>(pair.pid));
  const std::string_view wanted(prefix.data(), static_cast<std::size_t>(length));
  if (SameText(std::string_view(path).substr(0, wanted.size()), wanted)) return true;
  platform::HidIds listed;
  return platform::TheHost().hid.ListedIds(path, listed) && SameIds(listed, pair);
}

// A serial port belongs to one entry: whatever overwrites an entry lets go of its port first.
bool Add(const tsDevEntry& entry) {
  if (shared.DevCnt >= kTableEntries) return false;
  tsDevEntry& added = DevTable[shared.DevCnt];
  ReleasePort(added);
  added = entry;
  ++shared.DevCnt;
  return true;
}

bool IsOpen(const tsDevEntry& entry) { return entry.hDev != platform::kNoHandle; }

bool RemoveFirstOpen() {
  const auto live = LiveEntries();
  const auto first = std::ranges::find_if(live, IsOpen);
  if (first == live.end()) return false;
  CloseDevice(first->hDev);
  ReleasePort(*first);
  *first = {};
  first->hDev = platform::kNoHandle;
  return true;
}

// Moves each open device after the first gap down by one and shrinks the table by one. Deliberately no more
// than that: of several gaps some stay, and a device may then be in the table twice. Serial entries have no
// handle and count as gaps.
void CloseGaps() {
  const auto live = LiveEntries();
  const auto gap = std::ranges::find_if_not(live, IsOpen);
  if (gap == live.end()) return;
  for (auto entry = gap + 1; entry != live.end(); ++entry) {
    if (!IsOpen(*entry)) continue;
    tsDevEntry& below = *(entry - 1);
    ReleasePort(below);
    below = *entry;
    entry->pSerialPort = nullptr;
  }
  --shared.DevCnt;
}

}  // namespace

std::uint32_t CheckArrival(const char* path, const Arrival& arrival) {
  tsDevEntry fresh{};
  if (path == nullptr || std::strlen(path) >= sizeof fresh.DevName) return 0;
  if (!PathHasPair(path, arrival.path)) return 0;
  const platform::Handle device = OpenDevice(path);
  if (device == platform::kNoHandle) {
    shared.SearchErr = kNotOpened;
    return 0;
  }
  if (!UsbDriver_IsDevOurs(path, arrival.device, nullptr)) {
    CloseDevice(device);
    shared.SearchErr = kNotOurs;
    return 0;
  }
  tsDevEntry& named = arrival.namesFirstEntry ? DevTable[0] : fresh;
  named.hDev = device;
  named.LinkKind = kByReports;
  named.DID = 0;
  std::memset(named.DevName, 0, sizeof named.DevName);
  std::memcpy(named.DevName, path, std::strlen(path));
  return AddOrRemoveEntry(&fresh, false);
}

std::uint32_t AddOrRemoveEntry(const tsDevEntry* entry, bool remove) {
  bool done = false;
  shared.DevCnt = std::min(shared.DevCnt, kTableEntries);
  if (entry != nullptr) done = remove ? RemoveFirstOpen() : Add(*entry);
  CloseGaps();
  shared.ActDev = 0;
  return done ? 1 : 0;
}

}  // namespace tavlyn
