#include "platform/linux/com_paths.h"

#include <dirent.h>
#include <unistd.h>

#include <bitset>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/linux/parts.h"

namespace tavlyn::platform {
namespace {

constexpr const char* kPortFolder = "TAVLYNAPI_PORT_DIR";
// USB identity of the maker's virtual ports: this vendor, products 2300 to 23FF.
constexpr unsigned kVendor = 0x7A31;
constexpr unsigned kProductFamily = 0x23;

// A sysfs attribute that holds four hexadecimal digits; false where there is none.
bool ReadId(const std::string& path, unsigned& id) {
  std::FILE* file = std::fopen(path.c_str(), "r");
  if (file == nullptr) return false;
  const bool read = std::fscanf(file, "%4x", &id) == 1;
  std::fclose(file);
  return read;
}

// The nearest ancestor of a device that knows its USB identity, or sits on a PCMCIA bus, decides.
bool IsVirtual(std::string device) {
  for (; device.size() > std::strlen("/sys/devices"); device.erase(device.rfind('/'))) {
    unsigned vendor = 0;
    unsigned product = 0;
    if (ReadId(device + "/idVendor", vendor) && ReadId(device + "/idProduct", product)) {
      return vendor == kVendor && product >> 8 == kProductFamily;
    }
    if (RealPath(device + "/subsystem").ends_with("/pcmcia")) return true;
  }
  return false;
}

using ComNumbers = std::bitset<kHighestCom + 1>;

// Which COM numbers have a name <prefix><number> in a folder, where number 0 is COM number ofZero. All of
// them when it cannot be listed.
ComNumbers Listed(const std::string& folder, std::string_view prefix, unsigned ofZero) {
  ComNumbers numbers;
  DIR* names = opendir(folder.c_str());
  if (names == nullptr) return errno == ENOENT ? numbers : numbers.set();
  while (const dirent* entry = readdir(names)) {
    const std::string_view name = entry->d_name;
    unsigned short number = 0;
    if (!name.starts_with(prefix) ||
        std::from_chars(name.data() + prefix.size(), name.data() + name.size(), number).ec != std::errc{})
      continue;
    if (number + ofZero <= kHighestCom) numbers.set(number + ofZero);
  }
  closedir(names);
  return numbers;
}

// The folders are listed once: most of 256 names are not there, and each would be asked for in several steps.
ComNumbers MayBeThere() {
  if (const char* folder = secure_getenv(kPortFolder); folder != nullptr)
    return Listed(std::string(folder) + '/', "com", 0);
  return Listed("/dev/tavlyn/", "com", 0) | Listed("/dev/", "ttyS", 1);
}

}  // namespace

std::string ComPath(std::uint16_t number) {
  const std::string name = "com" + std::to_string(number);
  // With the variable set nothing outside its folder is ever opened.
  if (const char* folder = secure_getenv(kPortFolder); folder != nullptr)
    return std::string(folder) + '/' + name;
  std::string shipped = "/dev/tavlyn/" + name;
  return access(shipped.c_str(), F_OK) == 0 ? shipped : "/dev/ttyS" + std::to_string(number - 1);
}

void LinuxComPorts::FindVirtual(PortFlags flags) {
  const ComNumbers numbers = MayBeThere();
  for (std::uint16_t number = 1; number <= kHighestCom; ++number) {
    if (!numbers[number]) continue;
    const std::string node = RealPath(ComPath(number));
    if (node.empty()) continue;
    const std::string device = RealPath("/sys/class/tty/" + node.substr(node.rfind('/') + 1) + "/device");
    if (!device.empty() && IsVirtual(device)) flags[number] = 1;
  }
}

}  // namespace tavlyn::platform
