// HID through libhidapi-hidraw. One listed path is one interface with all the top-level usages listed for it.
#include <hidapi/hidapi.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/handle_table.h"
#include "platform/parts.h"
#include "platform/system_library.h"

namespace tavlyn::platform {
namespace {

// The functions that are used of hidapi 0.10 and later.
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
  // Those of its top-level collections; a device has a few.
  std::array<HidUsage, 32> usages;
};

constexpr const char* kLibrary = "libhidapi-hidraw.so.0";

constexpr HidUsage kKeyboardUsage{0x0001, 0x0006};

// The kernel queues no more input reports than this for one reader of a node.
constexpr int kLongestQueue = 64;

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

// The first entry for a path, or null.
const hid_device_info* FirstOf(const hid_device_info* list, const char* path) {
  while (list != nullptr && (list->path == nullptr || std::strcmp(list->path, path) != 0)) list = list->next;
  return list;
}

// The interface listed after this one, or null. The entries of an interface, one for each of its usages, are
// together.
const hid_device_info* InterfaceAfter(const hid_device_info& interface) {
  const hid_device_info* at = interface.next;
  while (at != nullptr && (at->path == nullptr || SamePath(*at, interface))) at = at->next;
  return at;
}

const hid_device_info* FirstInterface(const hid_device_info* list) {
  return list == nullptr || list->path != nullptr ? list : InterfaceAfter(*list);
}

// Calls a function with each usage of an interface until it returns false.
template <typename Function>
void ForEachUsage(const hid_device_info& interface, Function function) {
  const hid_device_info* end = InterfaceAfter(interface);
  for (const hid_device_info* at = &interface; at != end; at = at->next) {
    if (SamePath(*at, interface) && !function(HidUsage{at->usage_page, at->usage})) return;
  }
}

bool IsKeyboard(const hid_device_info& interface) {
  bool found = false;
  ForEachUsage(interface, [&](HidUsage usage) {
    found = usage.page == kKeyboardUsage.page && usage.usage == kKeyboardUsage.usage;
    return !found;
  });
  return found;
}

OpenHidInterface Described(const hid_device_info& interface) {
  OpenHidInterface described{nullptr, {interface.vendor_id, interface.product_id}, {}};
  auto next = described.usages.begin();
  ForEachUsage(interface, [&](HidUsage usage) {
    *next++ = usage;
    return next != described.usages.end();
  });
  return described;
}

class SystemHid final : public HidSystem {
 public:
  bool Load() override {
    // cppcheck-suppress publicAllocationError ; an Unload comes before the next Load
    library_ = LoadSystemLibrary(kLibrary);
    if (library_ == nullptr) return false;
    if (BindAll(library_, call_) && call_.init() == 0) return true;
    FreeSystemLibrary(library_);
    library_ = nullptr;
    return false;
  }

  // hid_exit is not called: the application may use hidapi itself.
  void Unload() override {
    if (library_ == nullptr) return;
    while (const auto left = devices_.RemoveNewest()) call_.close(left->device);
    call_.freeEnumeration(listed_);
    FreeSystemLibrary(library_);
    listed_ = nullptr;
    EndWalk();
    library_ = nullptr;
  }

  bool BeginWalk(HidClass cls) override {
    if (library_ == nullptr) return false;
    List();
    walked_ = cls;
    walking_ = true;
    Rewind();
    return true;
  }

  // Goes on from the member asked for before, so that a walk takes time in proportion to its length.
  WalkStep Member(int index, const char*& path) override {
    if (index < members_) Rewind();
    while (next_ != nullptr) {
      const hid_device_info& interface = *next_;
      next_ = InterfaceAfter(interface);
      if (walked_ == HidClass::kKeyboard && !IsKeyboard(interface)) continue;
      if (members_++ < index) continue;
      member_ = &interface;
      path = interface.path;
      return WalkStep::kPath;
    }
    return WalkStep::kEnd;
  }

  void EndWalk() override {
    walking_ = false;
    next_ = nullptr;
    member_ = nullptr;
    members_ = 0;
  }

  bool ListedIds(const char* path, HidIds& ids) override {
    const hid_device_info* listed = Find(path);
    ids = listed != nullptr ? HidIds{listed->vendor_id, listed->product_id} : HidIds{};
    return true;
  }

  // Opens only what hidapi lists: version 0.13 uses freed memory when the node is not a hidraw device.
  Handle Open(const char* path, OpenMode /*mode*/) override {
    const hid_device_info* listed = path != nullptr ? Find(path) : nullptr;
    if (listed == nullptr) return kNoHandle;
    OpenHidInterface opened = Described(*listed);
    opened.device = call_.openPath(path);
    if (opened.device == nullptr) return kNoHandle;
    return devices_.Add(opened, [this](const OpenHidInterface& one) { call_.close(one.device); });
  }

  void Close(Handle device) override {
    if (const auto opened = devices_.Remove(device)) call_.close(opened->device);
  }

  HidIds Attributes(Handle device) override {
    const auto opened = devices_.Find(device);
    return opened ? opened->ids : HidIds{};
  }

  UsageMatch TopUsage(Handle device, HidUsage wanted) override {
    const auto opened = devices_.Find(device);
    if (!opened) return UsageMatch::kUnreadable;
    const bool has = std::ranges::any_of(
        opened->usages, [&](HidUsage u) { return u.page == wanted.page && u.usage == wanted.usage; });
    return has ? UsageMatch::kYes : UsageMatch::kNo;
  }

  bool GetFeature(Handle device, std::span<std::uint8_t> report) override {
    hid_device* native = Native(device);
    return native != nullptr && call_.getFeature(native, report.data(), report.size()) > 0;
  }

  bool SetFeature(Handle device, std::span<const std::uint8_t> report) override {
    hid_device* native = Native(device);
    return native != nullptr && call_.sendFeature(native, report.data(), report.size()) >= 0;
  }

  Drain DrainInput(Handle device, std::span<std::uint8_t> report) override {
    hid_device* native = Native(device);
    if (native == nullptr) return Drain::kNothing;
    const int got = call_.readTimeout(native, report.data(), report.size(), 0);
    if (got <= 0) return got < 0 ? Drain::kGone : Drain::kNothing;
    std::uint8_t rest[64];
    for (int dropped = 0; dropped < kLongestQueue; ++dropped) {
      if (call_.readTimeout(native, rest, sizeof rest, 0) <= 0) break;
    }
    return Drain::kDrained;
  }

 private:
  void List() {
    call_.freeEnumeration(listed_);
    listed_ = call_.enumerate(0, 0);
  }

  void Rewind() {
    next_ = FirstInterface(listed_);
    member_ = nullptr;
    members_ = 0;
  }

  // Outside a walk the system is asked again; in a walk the path is nearly always that of the last member.
  const hid_device_info* Find(const char* path) {
    if (library_ == nullptr) return nullptr;
    if (!walking_) List();
    return FirstOf(member_ != nullptr && std::strcmp(member_->path, path) == 0 ? member_ : listed_, path);
  }

  hid_device* Native(Handle device) {
    const auto opened = devices_.Find(device);
    return opened ? opened->device : nullptr;
  }

  void* library_ = nullptr;  // from Load to Unload
  HidFunctions call_{};
  hid_device_info* listed_ = nullptr;  // by the current walk, or by the last look-up
  HidClass walked_{};
  bool walking_ = false;
  const hid_device_info* next_ = nullptr;    // interface to be looked at by a walk
  const hid_device_info* member_ = nullptr;  // that a walk handed out last
  int members_ = 0;                          // how many there were before next_
  HandleTable<OpenHidInterface> devices_;
};

constinit NeverDestroyed<SystemHid> hidPart;

}  // namespace

HidSystem& TheHid() { return hidPart; }

}  // namespace tavlyn::platform
