#include "platform/linux/com_paths.h"

#include <dirent.h>
#include <unistd.h>

#include <bitset>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

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

using Numbers = std::bitset<kHighestCom + 1>;

// Which of the names <prefix><number> stand in a folder; the first is COM number first. All of them when it
// cannot be listed.
Numbers Listed(const std::string& folder, const std::string& prefix, int first) {
  Numbers numbers;
  DIR* names = opendir(folder.c_str());
  if (names == nullptr) return errno == ENOENT ? numbers : numbers.set();
  while (const dirent* entry = readdir(names)) {
    const std::string name = entry->d_name;
    if (!name.starts_with(prefix)) continue;
    const long number = std::strtol(name.c_str() + prefix.size(), nullptr, 10) + first;
    if (number > 0 && number <= kHighestCom) numbers.set(static_cast<std::size_t>(number));
  }
  closedir(names);
  return numbers;
}

// The folders are listed once: most of 256 names are not there, and each would be asked for in several steps.
Numbers MayBeThere() {
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
  const Numbers numbers = MayBeThere();
  for (std::uint16_t number = 1; number <= kHighestCom; ++number) {
    if (!numbers[number]) continue;
    const std::string node = RealPath(ComPath(number));
    if (node.empty()) continue;
    const std::string device = RealPath("/sys/class/tty/" + node.substr(node.rfind('/') + 1) + "/device");
    if (!device.empty() && IsVirtual(device)) flags[number] = 1;
  }
}

}  // namespace tavlyn::platform
