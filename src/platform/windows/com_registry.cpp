#include "platform/windows/com_registry.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/windows/system.h"

namespace tavlyn::platform {
namespace {

constexpr std::size_t kLongestPath = 256;
constexpr DWORD kLongestKeyName = 255;
constexpr DWORD kLongestValueName = 1024;
constexpr DWORD kLongestPortName = 32;

constexpr char kUsbBranch[] = "SYSTEM\\CurrentControlSet\\Enum\\USB";
constexpr char kPcmciaBranch[] = "SYSTEM\\CurrentControlSet\\Enum\\PCMCIA";
constexpr char kUsbFamily[] = "VID_7A31&PID_23";
constexpr char kEveryDevice[] = "";

// A key of the local machine, open for reading; null when it does not open.
class Key {
 public:
  explicit Key(const std::string& path) {
    if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &key_) != ERROR_SUCCESS) key_ = nullptr;
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

bool SubkeyName(HKEY key, DWORD index, std::string& name) {
  std::array<char, kLongestKeyName + 1> text{};
  DWORD length = text.size();
  if (RegEnumKeyExA(key, index, text.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
    return false;
  }
  name = text.data();
  return true;
}

std::string UpperCase(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

// "COM12" gives 12; anything else a number that is no port.
long PortNumber(const char* text) {
  return std::strncmp(text, "COM", 3) == 0 ? std::strtol(text + 3, nullptr, 10) : 0;
}

std::string Below(const std::string& path, const std::string& name) { return path + '\\' + name; }

void ReadPortName(HKEY key, DWORD index, PortFlags flags) {
  std::array<char, kLongestValueName + 1> name{};
  DWORD nameLength = name.size();
  if (RegEnumValueA(key, index, name.data(), &nameLength, nullptr, nullptr, nullptr, nullptr) !=
      ERROR_SUCCESS) {
    return;
  }
  // The registry does not promise a terminator.
  std::array<char, kLongestPortName + 1> text{};
  DWORD size = kLongestPortName;
  if (RegQueryValueExA(key, name.data(), nullptr, nullptr, reinterpret_cast<BYTE*>(text.data()), &size) !=
      ERROR_SUCCESS) {
    return;
  }
  if (UpperCase(name.data()) != "PORTNAME") return;
  const long number = PortNumber(text.data());
  if (number >= 1 && number <= kHighestCom) flags[static_cast<std::size_t>(number)] = 1;
}

void ScanPortNames(const std::string& path, HKEY key, PortFlags flags) {
  const Counts counts = CountsOf(key);
  std::string name;
  for (DWORD i = 0; i < counts.subkeys; ++i) {
    if (!SubkeyName(key, i, name)) continue;
    const std::string child = Below(Below(path, name), "Device Parameters").substr(0, kLongestPath);
    // Cut back to the path that it began with, it would lead here again.
    if (child.size() <= path.size()) continue;
    const Key childKey(child);
    if (childKey.get() != nullptr) ScanPortNames(child, childKey.get(), flags);
  }
  for (DWORD i = 0; i < counts.values; ++i) ReadPortName(key, i, flags);
}

void ScanEnumBranch(const char* needle, const std::string& path, HKEY key, PortFlags flags) {
  const Counts counts = CountsOf(key);
  std::string name;
  for (DWORD i = 0; i < counts.subkeys; ++i) {
    if (!SubkeyName(key, i, name) || UpperCase(name).find(needle) == std::string::npos) continue;
    const std::string child = Below(path, name);
    const Key childKey(child);
    if (childKey.get() != nullptr) ScanPortNames(child, childKey.get(), flags);
  }
}

void ScanBranch(const char* needle, const char* path, PortFlags flags) {
  const Key key{std::string(path)};
  if (key.get() != nullptr) ScanEnumBranch(needle, path, key.get(), flags);
}

}  // namespace

void FindVirtualPorts(PortFlags flags) {
  ScanBranch(kUsbFamily, kUsbBranch, flags);
  ScanBranch(kEveryDevice, kPcmciaBranch, flags);
}

}  // namespace tavlyn::platform
