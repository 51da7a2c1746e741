#include <dlfcn.h>
#include <hidapi/hidapi.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string_view>
#include <vector>

#include "platform/guarded.h"
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

struct HidInterface {
  std::string path;
  HidIds ids;
  std::vector<HidUsage> usages;

  [[nodiscard]] bool Has(HidUsage wanted) const {
    return std::ranges::any_of(usages,
                               [&](HidUsage u) { return u.page == wanted.page && u.usage == wanted.usage; });
  }
};

struct OpenHidInterface {
  Handle handle;
  HidInterface listed;
  std::unique_ptr<hid_device, decltype(&hid_close)> device;
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

}  // namespace

struct LinuxHid::State {
  void* library;
  HidFunctions call;
  std::vector<HidInterface> listed;  // by the walk that is running
  std::vector<const HidInterface*> members;
  bool walking = false;
  std::vector<OpenHidInterface> open;
  Handle next = 1;

  std::vector<HidInterface> List() const;
  bool Walk(HidClass cls);
  const HidInterface* Find(std::string_view path);
  Handle Open(const HidInterface& interface);
  OpenHidInterface* Opened(Handle handle);
};

std::vector<HidInterface> LinuxHid::State::List() const {
  std::vector<HidInterface> interfaces;
  const std::unique_ptr<hid_device_info, decltype(&hid_free_enumeration)> first(call.enumerate(0, 0),
                                                                                call.freeEnumeration);
  for (const hid_device_info* info = first.get(); info != nullptr; info = info->next) {
    if (info->path == nullptr) continue;
    auto at = std::ranges::find(interfaces, std::string_view(info->path), &HidInterface::path);
    if (at == interfaces.end()) {
      interfaces.push_back({info->path, {info->vendor_id, info->product_id}, {}});
      at = interfaces.end() - 1;
    }
    at->usages.push_back({info->usage_page, info->usage});
  }
  return interfaces;
}

bool LinuxHid::State::Walk(HidClass cls) {
  listed = List();
  members.clear();
  for (const HidInterface& interface : listed) {
    if (cls == HidClass::kHid || interface.Has(kKeyboardUsage)) members.push_back(&interface);
  }
  walking = true;
  return true;
}

// Outside a walk the system is asked anew.
const HidInterface* LinuxHid::State::Find(std::string_view path) {
  if (!walking) listed = Guarded(std::vector<HidInterface>(), [&] { return List(); });
  const auto at = std::ranges::find(listed, path, &HidInterface::path);
  return at != listed.end() ? &*at : nullptr;
}

Handle LinuxHid::State::Open(const HidInterface& interface) {
  OpenHidInterface opened{next, interface, {call.openPath(interface.path.c_str()), call.close}};
  if (opened.device == nullptr) return kNoHandle;
  open.push_back(std::move(opened));
  return next++;
}

OpenHidInterface* LinuxHid::State::Opened(Handle handle) {
  const auto at = std::ranges::find(open, handle, &OpenHidInterface::handle);
  return at != open.end() ? &*at : nullptr;
}

bool LinuxHid::Load() {
  void* library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return false;
  HidFunctions functions{};
  if (!BindAll(library, functions) || functions.init() != 0) {
    dlclose(library);
    return false;
  }
  state_ = new (std::nothrow)
      State{.library = library, .call = functions, .listed = {}, .members = {}, .open = {}};
  if (state_ == nullptr) dlclose(library);
  return state_ != nullptr;
}

// hid_exit is not called: the application may use hidapi itself.
void LinuxHid::Unload() {
  if (state_ == nullptr) return;
  void* library = state_->library;
  delete state_;
  state_ = nullptr;
  dlclose(library);
}

bool LinuxHid::BeginWalk(HidClass cls) {
  return state_ != nullptr && Guarded(false, [&] { return state_->Walk(cls); });
}

WalkStep LinuxHid::Member(int index, std::string& path) {
  const auto at = static_cast<std::size_t>(index);
  if (state_ == nullptr || at >= state_->members.size()) return WalkStep::kEnd;
  return Guarded(WalkStep::kSkip, [&] {
    path = state_->members[at]->path;
    return WalkStep::kPath;
  });
}

void LinuxHid::EndWalk() {
  if (state_ == nullptr) return;
  state_->walking = false;
  state_->members.clear();
}

bool LinuxHid::ListedIds(const char* path, HidIds& ids) {
  const HidInterface* listed = state_ != nullptr ? state_->Find(path) : nullptr;
  ids = listed != nullptr ? listed->ids : HidIds{};
  return true;
}

// Only what hidapi lists is opened: its 0.13 uses memory after freeing it when the node is no hidraw device.
Handle LinuxHid::Open(const char* path, OpenMode /*mode*/) {
  const HidInterface* listed = state_ != nullptr && path != nullptr ? state_->Find(path) : nullptr;
  if (listed == nullptr) return kNoHandle;
  return Guarded(kNoHandle, [&] { return state_->Open(*listed); });
}

void LinuxHid::Close(Handle device) {
  OpenHidInterface* opened = state_ != nullptr ? state_->Opened(device) : nullptr;
  if (opened == nullptr) return;
  state_->open.erase(state_->open.begin() + (opened - state_->open.data()));
}

HidIds LinuxHid::Attributes(Handle device) {
  const OpenHidInterface* opened = state_ != nullptr ? state_->Opened(device) : nullptr;
  return opened != nullptr ? opened->listed.ids : HidIds{};
}

UsageMatch LinuxHid::TopUsage(Handle device, HidUsage wanted) {
  const OpenHidInterface* opened = state_ != nullptr ? state_->Opened(device) : nullptr;
  if (opened == nullptr) return UsageMatch::kUnreadable;
  return opened->listed.Has(wanted) ? UsageMatch::kYes : UsageMatch::kNo;
}

bool LinuxHid::GetFeature(Handle device, std::span<std::uint8_t> report) {
  const OpenHidInterface* opened = state_ != nullptr ? state_->Opened(device) : nullptr;
  return opened != nullptr && state_->call.getFeature(opened->device.get(), report.data(), report.size()) > 0;
}

bool LinuxHid::SetFeature(Handle device, std::span<const std::uint8_t> report) {
  const OpenHidInterface* opened = state_ != nullptr ? state_->Opened(device) : nullptr;
  return opened != nullptr &&
         state_->call.sendFeature(opened->device.get(), report.data(), report.size()) >= 0;
}

Drain LinuxHid::DrainInput(Handle device, std::span<std::uint8_t> report) {
  const OpenHidInterface* opened = state_ != nullptr ? state_->Opened(device) : nullptr;
  if (opened == nullptr) return Drain::kNothing;
  const int got = state_->call.readTimeout(opened->device.get(), report.data(), report.size(), 0);
  if (got <= 0) return got < 0 ? Drain::kGone : Drain::kNothing;
  std::uint8_t rest[64];
  for (int dropped = 0; dropped < kLongestQueue; ++dropped) {
    if (state_->call.readTimeout(opened->device.get(), rest, sizeof rest, 0) <= 0) break;
  }
  return Drain::kDrained;
}

}  // namespace tavlyn::platform
