#include "platform/windows/com_registry.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

constexpr std::size_t kLongestPath = 256;
constexpr DWORD kLongestKeyName = 255;
constexpr DWORD kLongestValueName = 1024;
constexpr DWORD kLongestPortName = 32;

constexpr char kUsbBranch[] = "SYSTEM\\CurrentControlSet\\Enum\\USB";
constexpr char kPcmciaBranch[] = "SYSTEM\\CurrentControlSet\\Enum\\PCMCIA";
constexpr char kEveryDevice[] = "";

// A key of the local machine, open for reading; null when it does not open.
class Key {
 public:
  explicit Key(const char* path) {
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path, 0, KEY_READ, &key_) != ERROR_SUCCESS) key_ = nullptr;
  }
  ~Key() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  [[nodiscard]] HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

struct Counts {
  DWORD subkeys = 0;
  DWORD values = 0;
};

Counts CountsOf(HKEY key) {
  Counts counts;
  if (RegQueryInfoKeyA(key, nullptr, nullptr, nullptr, &counts.subkeys, nullptr, nullptr, &counts.values,
                       nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
    return {};
  }
  return counts;
}

using KeyName = std::array<char, kLongestKeyName + 1>;

bool SubkeyName(HKEY key, DWORD index, KeyName& name) {
  DWORD length = kLongestKeyName + 1;
  return RegEnumKeyExA(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

template <std::size_t kRoom>
std::array<char, kRoom> UpperCase(std::array<char, kRoom> text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

// 12 for "COM12"; for anything else a number that is not a port.
long PortNumber(const char* text) {
  return std::strncmp(text, "COM", 3) == 0 ? std::strtol(text + 3, nullptr, 10) : 0;
}

void ReadPortName(HKEY key, DWORD index, PortFlags flags) {
  std::array<char, kLongestValueName + 1> name{};
  DWORD nameLength = name.size();
  if (RegEnumValueA(key, index, name.data(), &nameLength, nullptr, nullptr, nullptr, nullptr) !=
      ERROR_SUCCESS) {
    return;
  }
  // The registry does not guarantee a terminator.
  std::array<char, kLongestPortName + 1> text{};
  DWORD size = kLongestPortName;
  if (RegQueryValueExA(key, name.data(), nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()), &size) !=
      ERROR_SUCCESS) {
    return;
  }
  if (std::strcmp(UpperCase(name).data(), "PORTNAME") != 0) return;
  const long number = PortNumber(text.data());
  if (number >= 1 && number <= kHighestCom) flags[static_cast<std::size_t>(number)] = 1;
}

void ScanPortNames(const char* path, HKEY key, PortFlags flags) {
  const Counts counts = CountsOf(key);
  KeyName name{};
  for (DWORD i = 0; i < counts.subkeys; ++i) {
    if (!SubkeyName(key, i, name)) continue;
    std::array<char, kLongestPath + 1> child;
    std::snprintf(child.data(), child.size(), "%s\\%s\\Device Parameters", path, name.data());
    // A path that was cut back to the one it began with would lead here again.
    if (std::strlen(child.data()) <= std::strlen(path)) continue;
    const Key childKey(child.data());
    if (childKey.get() != nullptr) ScanPortNames(child.data(), childKey.get(), flags);
  }
  for (DWORD i = 0; i < counts.values; ++i) ReadPortName(key, i, flags);
}

void ScanEnumBranch(const char* needle, const char* path, HKEY key, PortFlags flags) {
  const Counts counts = CountsOf(key);
  KeyName name{};
  for (DWORD i = 0; i < counts.subkeys; ++i) {
    if (!SubkeyName(key, i, name) || std::strstr(UpperCase(name).data(), needle) == nullptr) continue;
    std::array<char, 2 * kLongestPath> child;
    std::snprintf(child.data(), child.size(), "%s\\%s", path, name.data());
    const Key childKey(child.data());
    if (childKey.get() != nullptr) ScanPortNames(child.data(), childKey.get(), flags);
  }
}

void ScanBranch(const char* needle, const char* path, PortFlags flags) {
  const Key key(path);
  if (key.get() != nullptr) ScanEnumBranch(needle, path, key.get(), flags);
}

}  // namespace

void FindVirtualPorts(PortFlags flags) {
  char family[32];
  std::snprintf(family, sizeof family, "VID_%04X&PID_%02X", kPortVendor, kPortFamily);
  ScanBranch(family, kUsbBranch, flags);
  ScanBranch(kEveryDevice, kPcmciaBranch, flags);
}

}  // namespace tavlyn::platform
