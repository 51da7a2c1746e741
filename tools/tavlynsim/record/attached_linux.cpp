#include <dlfcn.h>
#include <hidapi/hidapi.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <utility>

#include "tools/tavlynsim/record/attached.h"

namespace tavlyn::sim {
namespace {

constexpr const char* kLibrary = "libhidapi-hidraw.so.0";
constexpr std::size_t kLongestInput = 64;

struct Pair {
  std::uint16_t vid;
  std::uint16_t pid;
};

constexpr Pair kOurs[] = {
#define TAVLYN_PAIR(kind, vid, pid) {0x##vid, 0x##pid},
#define TAVLYN_ROW(vid, pid, vendor, filter) {0x##vid, 0x##pid},
#include "hid/identities.inc"
};

bool IsOurs(const hid_device_info& info) {
  return std::ranges::any_of(
      kOurs, [&](const Pair& one) { return one.vid == info.vendor_id && one.pid == info.product_id; });
}

// The calls of the library that are used here.
struct Calls {
  decltype(&hid_enumerate) enumerate = nullptr;
  decltype(&hid_free_enumeration) free = nullptr;
  decltype(&hid_open_path) open = nullptr;
  decltype(&hid_close) close = nullptr;
  decltype(&hid_send_feature_report) send = nullptr;
  decltype(&hid_get_feature_report) get = nullptr;
  decltype(&hid_read_timeout) read = nullptr;
};

template <typename Function>
bool Bind(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

bool BindAll(void* library, Calls& calls) {
  return Bind(library, "hid_enumerate", calls.enumerate) &&
         Bind(library, "hid_free_enumeration", calls.free) && Bind(library, "hid_open_path", calls.open) &&
         Bind(library, "hid_close", calls.close) && Bind(library, "hid_send_feature_report", calls.send) &&
         Bind(library, "hid_get_feature_report", calls.get) && Bind(library, "hid_read_timeout", calls.read);
}

// Device texts are shown as they are told; characters beyond ASCII do not occur in those of our devices.
std::string Narrow(const wchar_t* text) {
  std::string narrow;
  for (; text != nullptr && *text != L'\0'; ++text) narrow += *text < 0x80 ? static_cast<char>(*text) : '?';
  return narrow;
}

// Opened when a program first talks to one, and then kept open.
class Attached final : public Source {
 public:
  explicit Attached(const Calls& calls) : calls_(calls) {}
  ~Attached() override {
    for (auto& [key, device] : devices_) Close(device);
  }

  std::vector<Listed> List() override {
    for (auto& [key, device] : devices_) device.listed.identity.usages.clear();
    hid_device_info* const all = calls_.enumerate(0, 0);
    for (const hid_device_info* info = all; info != nullptr; info = info->next) {
      if (IsOurs(*info)) Add(*info);
    }
    calls_.free(all);
    std::vector<Listed> list;
    for (auto& [key, device] : devices_) {
      if (device.listed.identity.usages.empty()) {
        Close(device);
      } else {
        list.push_back(device.listed);
      }
    }
    return list;
  }

  Outcome SetFeature(Key key, std::span<const std::uint8_t> report) override {
    hid_device* device = Open(key);
    if (device == nullptr) return Outcome::kGone;
    return calls_.send(device, report.data(), report.size()) < 0 ? Outcome::kRefused : Outcome::kDone;
  }

  Outcome GetFeature(Key key, std::span<std::uint8_t> report) override {
    hid_device* device = Open(key);
    if (device == nullptr) return Outcome::kGone;
    return calls_.get(device, report.data(), report.size()) < 0 ? Outcome::kRefused : Outcome::kDone;
  }

  Outcome TakeInput(Key key, std::vector<std::uint8_t>& report) override {
    hid_device* device = Open(key);
    if (device == nullptr) return Outcome::kGone;
    report.resize(kLongestInput);
    const int count = calls_.read(device, report.data(), report.size(), 0);
    if (count < 0) return Outcome::kGone;
    report.resize(static_cast<std::size_t>(count));
    return count == 0 ? Outcome::kNothing : Outcome::kDone;
  }

  std::vector<ListedLine> Lines() override { return {}; }
  Outcome SendBytes(Key, std::span<const std::uint8_t>) override { return Outcome::kGone; }
  Outcome TakeBytes(Key, std::vector<std::uint8_t>&) override { return Outcome::kGone; }
  Outcome Silence(Key) override { return Outcome::kGone; }
  Outcome TakeCut(Key) override { return Outcome::kGone; }
  bool Run(const std::string&, std::string& reply) override {
    reply = "the devices of this machine take no commands";
    return false;
  }

 private:
  struct Device {
    std::string path;
    Listed listed;
    hid_device* opened = nullptr;
  };

  // One interface has an entry for each of its usages. What its reports are like is not known beforehand; 0
  // bytes say so.
  void Add(const hid_device_info& info) {
    auto at = std::ranges::find_if(devices_, [&](const auto& one) { return one.second.path == info.path; });
    if (at == devices_.end()) {
      const auto key = static_cast<Key>(devices_.size() + 1);
      HidIdentity identity{info.vendor_id, info.product_id};
      identity.featureBytes = 0;
      identity.product = Narrow(info.product_string);
      identity.serial = Narrow(info.serial_number);
      at = devices_.emplace(key, Device{info.path, {key, std::move(identity)}}).first;
    }
    at->second.listed.identity.usages.push_back({info.usage_page, info.usage});
  }

  hid_device* Open(Key key) {
    const auto at = devices_.find(key);
    if (at == devices_.end()) return nullptr;
    if (at->second.opened == nullptr) at->second.opened = calls_.open(at->second.path.c_str());
    return at->second.opened;
  }

  void Close(Device& device) const {
    if (device.opened != nullptr) calls_.close(device.opened);
    device.opened = nullptr;
  }

  const Calls calls_;
  std::map<Key, Device> devices_;  // all that were ever there
};

}  // namespace

// The library stays loaded: its devices are closed in the program's last steps.
std::unique_ptr<Source> AttachedDevices(std::string& problem) {
  void* library = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
  Calls calls;
  if (library != nullptr && BindAll(library, calls)) return std::make_unique<Attached>(calls);
  problem = std::string(kLibrary) + " cannot be loaded, without which no HID device is reached";
  return nullptr;
}

}  // namespace tavlyn::sim
