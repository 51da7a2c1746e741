#include <dlfcn.h>
#include <hidapi/hidapi.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

#include "platform/handle_table.h"
#include "platform/linux/parts.h"

namespace tavlyn::platform {
// What is needed of hidapi 0.10 and later.
struct HidFunctions {
  decltype(&hid_init) init;
  decltype(&hid_enumerate) enumerate;
  decltype(&hid_free_enumeration) freeEnumeration;
  decltype(&hid_open_path) openPath;
  decltype(&hid_close) close;
  decltype(&hid_send_feature_report) sendFeature;
  decltype(&hid_get_feature_report) getFeature;
  decltype(&hid_read_timeout) readTimeout;
};

struct OpenHidInterface {
  hid_device* device;
  HidIds ids;
  // Of its top-level collections; a device has a few.
  std::array<HidUsage, 32> usages;
};

namespace {

constexpr const char* kLibrary = "libhidapi-hidraw.so.0";

constexpr HidUsage kKeyboardUsage{0x0001, 0x0006};

// The kernel queues no more input reports than this for one reader of a node.
constexpr int kLongestQueue = 64;

template <typename Function>
bool Bind(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

bool BindAll(void* library, HidFunctions& functions) {
  return Bind(library, "hid_init", functions.init) && Bind(library, "hid_enumerate", functions.enumerate) &&
         Bind(library, "hid_free_enumeration", functions.freeEnumeration) &&
         Bind(library, "hid_open_path", functions.openPath) && Bind(library, "hid_close", functions.close) &&
         Bind(library, "hid_send_feature_report", functions.sendFeature) &&
         Bind(library, "hid_get_feature_report", functions.getFeature) &&
         Bind(library, "hid_read_timeout", functions.readTimeout);
}

bool SamePath(const hid_device_info& a, const hid_device_info& b) {
  return a.path != nullptr && b.path != nullptr && std::strcmp(a.path, b.path) == 0;
}

// The usages of one path stand in entries of their own.
bool HasUsage(const hid_device_info& interface, HidUsage wanted) {
  for (const hid_device_info* at = &interface; at != nullptr; at = at->next) {
    if (SamePath(*at, interface) && at->usage_page == wanted.page && at->usage == wanted.usage) return true;
  }
  return false;
}

OpenHidInterface Described(const hid_device_info& interface) {
  OpenHidInterface described{nullptr, {interface.vendor_id, interface.product_id}, {}};
  auto next = described.usages.begin();
  for (const hid_device_info* at = &interface; at != nullptr && next != described.usages.end();
       at = at->next) {
    if (SamePath(*at, interface)) *next++ = {at->usage_page, at->usage};
  }
  return described;
}

}  // namespace

struct LinuxHid::State : Allocated {
  void* library;
  HidFunctions call;
  hid_device_info* listed = nullptr;  // by the walk that is running, or when it was last asked
  HidClass walked{};
  bool walking = false;
  HandleTable<OpenHidInterface> open;

  void List() {
    call.freeEnumeration(listed);
    listed = call.enumerate(0, 0);
  }
  [[nodiscard]] const hid_device_info* Listed(const char* path) const;
  [[nodiscard]] bool IsMember(const hid_device_info& entry) const;
  const hid_device_info* Find(const char* path);
  hid_device* Device(Handle handle) {
    const auto opened = open.Find(handle);
    return opened ? opened->device : nullptr;
  }
};

// The first entry of a path, or null.
const hid_device_info* LinuxHid::State::Listed(const char* path) const {
  const hid_device_info* entry = listed;
  while (entry != nullptr && (entry->path == nullptr || std::strcmp(entry->path, path) != 0))
    entry = entry->next;
  return entry;
}

bool LinuxHid::State::IsMember(const hid_device_info& entry) const {
  return entry.path != nullptr && Listed(entry.path) == &entry &&
         (walked == HidClass::kHid || HasUsage(entry, kKeyboardUsage));
}

// Outside a walk the system is asked anew.
const hid_device_info* LinuxHid::State::Find(const char* path) {
  if (!walking) List();
  return Listed(path);
}

bool LinuxHid::Load() {
  void* library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return false;
  HidFunctions functions{};
  if (!BindAll(library, functions) || functions.init() != 0) {
    dlclose(library);
    return false;
  }
  state_ = new (std::nothrow) State;
  if (state_ == nullptr) {
    dlclose(library);
    return false;
  }
  state_->library = library;
  state_->call = functions;
  return true;
}

// hid_exit is not called: the application may use hidapi itself.
void LinuxHid::Unload() {
  if (state_ == nullptr) return;
  while (const auto left = state_->open.RemoveNewest()) state_->call.close(left->device);
  state_->call.freeEnumeration(state_->listed);
  dlclose(state_->library);
  delete state_;
  state_ = nullptr;
}

bool LinuxHid::BeginWalk(HidClass cls) {
  if (state_ == nullptr) return false;
  state_->List();
  state_->walked = cls;
  state_->walking = true;
  return true;
}

WalkStep LinuxHid::Member(int index, const char*& path) {
  const hid_device_info* entry = state_ != nullptr && state_->walking ? state_->listed : nullptr;
  for (; entry != nullptr; entry = entry->next) {
    if (!state_->IsMember(*entry) || index-- > 0) continue;
    path = entry->path;
    return WalkStep::kPath;
  }
  return WalkStep::kEnd;
}

void LinuxHid::EndWalk() {
  if (state_ != nullptr) state_->walking = false;
}

bool LinuxHid::ListedIds(const char* path, HidIds& ids) {
  const hid_device_info* listed = state_ != nullptr ? state_->Find(path) : nullptr;
  ids = listed != nullptr ? HidIds{listed->vendor_id, listed->product_id} : HidIds{};
  return true;
}

// Only what hidapi lists is opened: its 0.13 uses memory after freeing it when the node is no hidraw device.
Handle LinuxHid::Open(const char* path, OpenMode /*mode*/) {
  const hid_device_info* listed = state_ != nullptr && path != nullptr ? state_->Find(path) : nullptr;
  if (listed == nullptr) return kNoHandle;
  OpenHidInterface opened = Described(*listed);
  opened.device = state_->call.openPath(path);
  if (opened.device == nullptr) return kNoHandle;
  return state_->open.Add(opened, [&](const OpenHidInterface& one) { state_->call.close(one.device); });
}

void LinuxHid::Close(Handle device) {
  if (state_ == nullptr) return;
  if (const auto opened = state_->open.Remove(device)) state_->call.close(opened->device);
}

HidIds LinuxHid::Attributes(Handle device) {
  if (state_ == nullptr) return {};
  const auto opened = state_->open.Find(device);
  return opened ? opened->ids : HidIds{};
}

UsageMatch LinuxHid::TopUsage(Handle device, HidUsage wanted) {
  if (state_ == nullptr) return UsageMatch::kUnreadable;
  const auto opened = state_->open.Find(device);
  if (!opened) return UsageMatch::kUnreadable;
  const bool has = std::ranges::any_of(
      opened->usages, [&](HidUsage u) { return u.page == wanted.page && u.usage == wanted.usage; });
  return has ? UsageMatch::kYes : UsageMatch::kNo;
}

bool LinuxHid::GetFeature(Handle device, std::span<std::uint8_t> report) {
  hid_device* opened = state_ != nullptr ? state_->Device(device) : nullptr;
  return opened != nullptr && state_->call.getFeature(opened, report.data(), report.size()) > 0;
}

bool LinuxHid::SetFeature(Handle device, std::span<const std::uint8_t> report) {
  hid_device* opened = state_ != nullptr ? state_->Device(device) : nullptr;
  return opened != nullptr && state_->call.sendFeature(opened, report.data(), report.size()) >= 0;
}

Drain LinuxHid::DrainInput(Handle device, std::span<std::uint8_t> report) {
  hid_device* opened = state_ != nullptr ? state_->Device(device) : nullptr;
  if (opened == nullptr) return Drain::kNothing;
  const int got = state_->call.readTimeout(opened, report.data(), report.size(), 0);
  if (got <= 0) return got < 0 ? Drain::kGone : Drain::kNothing;
  std::uint8_t rest[64];
  for (int dropped = 0; dropped < kLongestQueue; ++dropped) {
    if (state_->call.readTimeout(opened, rest, sizeof rest, 0) <= 0) break;
  }
  return Drain::kDrained;
}

}  // namespace tavlyn::platform
