#include "sim/carriers/virtual_hid.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tavlyn::sim {

using platform::Drain;
using platform::Handle;
using platform::HidClass;
using platform::HidIds;
using platform::HidUsage;
using platform::kNoHandle;
using platform::OpenMode;
using platform::UsageMatch;
using platform::WalkStep;

namespace {

bool HasUsage(const HidDevice& device, HidUsage wanted) {
  const auto& usages = device.Identity().usages;
  return std::any_of(usages.begin(), usages.end(), [&](const Usage& usage) {
    return usage.page == wanted.page && usage.usage == wanted.usage;
  });
}

// Of an open handle, which is as wide everywhere as on a 64-bit processor, in the table.
std::size_t Place(Handle device) { return static_cast<std::size_t>(device) - 1; }

// Whether a report of this size and ID is one of the device's.
bool Fits(const HidIdentity& identity, std::span<const std::uint8_t> report) {
  return !report.empty() && identity.Takes(report.size() - 1) && report[0] == identity.reportId;
}

}  // namespace

Interface& VirtualHid::Plug(std::string path, std::shared_ptr<HidDevice> device) {
  auto added = std::make_shared<Interface>();
  added->path = std::move(path);
  added->inKeyboardClass = HasUsage(*device, {1, 6});
  added->device = std::move(device);
  interfaces_.push_back(added);
  return *added;
}

void VirtualHid::Unplug(const std::string& path) {
  for (const Shared& interface : interfaces_) {
    if (interface->path == path) interface->plugged = false;
  }
}

std::size_t VirtualHid::OpenHandles() const {
  return static_cast<std::size_t>(
      std::count_if(handles_.begin(), handles_.end(), [](const Shared& open) { return open != nullptr; }));
}

void VirtualHid::Reset() {
  loads = walks = listsIds = true;
  interfaces_.clear();
  handles_.clear();
  walk_.reset();
  loaded_ = false;
  misuses_.clear();
}

bool VirtualHid::IsListed(const Interface& interface) {
  return interface.plugged && interface.device->Present();
}

Interface* VirtualHid::Find(const char* path) const {
  const auto found = std::find_if(interfaces_.begin(), interfaces_.end(), [&](const Shared& candidate) {
    return candidate->path == path && IsListed(*candidate);
  });
  return found == interfaces_.end() ? nullptr : found->get();
}

bool VirtualHid::IsOpen(Handle device) const {
  return device != 0 && device <= handles_.size() && handles_[Place(device)] != nullptr;
}

Interface* VirtualHid::Reach(Handle device) const {
  if (!IsOpen(device)) return nullptr;
  const Shared& interface = handles_[Place(device)];
  return IsListed(*interface) ? interface.get() : nullptr;
}

bool VirtualHid::Load() {
  loaded_ = loads;
  Event event{EventKind::kLoad};
  event.ok = loaded_;
  transcript_.Add(event);
  return loaded_;
}

void VirtualHid::Unload() {
  loaded_ = false;
  transcript_.Add({EventKind::kUnload});
}

bool VirtualHid::BeginWalk(HidClass cls) {
  if (walk_) misuses_.emplace_back("a walk begun inside a walk");
  Event event{EventKind::kWalk};
  event.ok = loaded_ && walks;
  event.text = cls == HidClass::kHid ? "hid" : "keyboard";
  transcript_.Add(event);
  if (!event.ok) return false;

  walk_.emplace();
  for (const Shared& interface : interfaces_) {
    const bool member = cls == HidClass::kHid ? interface->inHidClass : interface->inKeyboardClass;
    if (member && IsListed(*interface)) walk_->push_back(interface);
  }
  return true;
}

WalkStep VirtualHid::Member(int index, const char*& path) {
  if (!walk_ || index < 0) {
    misuses_.emplace_back("a member asked for outside a walk");
    return WalkStep::kEnd;
  }
  const auto position = static_cast<std::size_t>(index);
  if (position >= walk_->size()) return WalkStep::kEnd;
  if ((*walk_)[position]->skipped) return WalkStep::kSkip;
  path = (*walk_)[position]->path.c_str();
  return WalkStep::kPath;
}

void VirtualHid::EndWalk() {
  if (!walk_) misuses_.emplace_back("a walk ended that was not begun");
  walk_.reset();
}

bool VirtualHid::ListedIds(const char* path, HidIds& ids) {
  const Interface* interface = loaded_ && listsIds ? Find(path) : nullptr;
  if (interface == nullptr) return false;
  const HidIdentity& identity = interface->device->Identity();
  ids = {identity.vid, identity.pid};
  return true;
}

Handle VirtualHid::Open(const char* path, OpenMode mode) {
  Event event{EventKind::kOpen};
  event.text = mode == OpenMode::kOverlapped ? std::string("overlapped ") + path : path;
  const Interface* interface = loaded_ ? Find(path) : nullptr;
  event.ok = interface != nullptr && interface->opens;
  if (event.ok) {
    handles_.push_back(*std::find_if(interfaces_.begin(), interfaces_.end(),
                                     [&](const Shared& candidate) { return candidate.get() == interface; }));
    event.handle = handles_.size();
  }
  transcript_.Add(event);
  return event.ok ? event.handle : kNoHandle;
}

void VirtualHid::Close(Handle device) {
  Event event{EventKind::kClose};
  event.handle = device;
  event.ok = IsOpen(device);
  if (event.ok) handles_[Place(device)] = nullptr;
  transcript_.Add(event);
}

HidIds VirtualHid::Attributes(Handle device) {
  const Interface* interface = Reach(device);
  Event event{EventKind::kAttributes};
  event.handle = device;
  event.ok = interface != nullptr && interface->tellsAttributes;
  transcript_.Add(event);
  if (!event.ok) return {};
  const HidIdentity& identity = interface->device->Identity();
  return {identity.vid, identity.pid};
}

UsageMatch VirtualHid::TopUsage(Handle device, HidUsage wanted) {
  const Interface* interface = Reach(device);
  Event event{EventKind::kUsage};
  event.handle = device;
  event.ok = interface != nullptr && interface->tellsUsages;
  transcript_.Add(event);
  if (!event.ok) return UsageMatch::kUnreadable;
  return HasUsage(*interface->device, wanted) ? UsageMatch::kYes : UsageMatch::kNo;
}

bool VirtualHid::GetFeature(Handle device, std::span<std::uint8_t> report) {
  const Interface* interface = Reach(device);
  const bool got = interface != nullptr && Fits(interface->device->Identity(), report) &&
                   interface->device->GetFeature(report.subspan(1));
  Event event = ReportEvent(EventKind::kGet, device, report);
  event.ok = got;
  if (!got) event.bytes.clear();
  transcript_.Add(event);
  return got;
}

bool VirtualHid::SetFeature(Handle device, std::span<const std::uint8_t> report) {
  const Interface* interface = Reach(device);
  Event event = ReportEvent(EventKind::kSet, device, report);
  event.ok = interface != nullptr && Fits(interface->device->Identity(), report) &&
             interface->device->SetFeature(report.subspan(1));
  transcript_.Add(event);
  return event.ok;
}

Drain VirtualHid::DrainInput(Handle device, std::span<std::uint8_t> report) {
  const Interface* interface = Reach(device);
  const bool gone = interface == nullptr && IsOpen(device);
  std::vector<std::uint8_t> taken;
  std::vector<std::uint8_t> dropped;
  const bool drained = interface != nullptr && interface->device->TakeInput(taken);
  while (drained && interface->device->TakeInput(dropped)) {
  }
  std::copy_n(taken.begin(), std::min(taken.size(), report.size()), report.begin());

  Event event{EventKind::kDrain};
  event.handle = device;
  event.ok = !gone;
  event.bytes = taken;
  if (event.ok && !drained) event.text = "nothing";
  transcript_.Add(event);
  if (gone) return Drain::kGone;
  return drained ? Drain::kDrained : Drain::kNothing;
}

}  // namespace tavlyn::sim
