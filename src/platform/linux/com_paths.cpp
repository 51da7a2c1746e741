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

#include "platform/linux/trusted_file.h"

namespace tavlyn::platform {
namespace {

constexpr const char* kPortFolder = "TAVLYNAPI_PORT_DIR";

// Reads a sysfs attribute of four hexadecimal digits; false when there is none.
bool ReadId(const Path& path, unsigned& id) {
  std::FILE* file = std::fopen(path.c_str(), "r");
  if (file == nullptr) return false;
  const bool read = std::fscanf(file, "%4x", &id) == 1;
  std::fclose(file);
  return read;
}

// The nearest ancestor of a device that has a USB identity, or is on a PCMCIA bus, decides.
bool IsVirtual(Path device) {
  for (; device.View().size() > std::strlen("/sys/devices"); device.Cut(device.View().rfind('/'))) {
    unsigned vendor = 0;
    unsigned product = 0;
    if (ReadId(Path("%s/idVendor", device.c_str()), vendor) &&
        ReadId(Path("%s/idProduct", device.c_str()), product)) {
      return vendor == kPortVendor && product >> 8 == kPortFamily;
    }
    if (RealPath(Path("%s/subsystem", device.c_str())).View().ends_with("/pcmcia")) return true;
  }
  return false;
}

using ComNumbers = std::bitset<kHighestCom + 1>;

// Which COM numbers have a name <prefix><number> in a folder, where number 0 is COM number ofZero. All of
// them when the folder is there but cannot be listed.
ComNumbers Listed(const Path& folder, std::string_view prefix, unsigned ofZero) {
  ComNumbers numbers;
  DIR* names = opendir(folder.c_str());
  if (names == nullptr) return errno == ENOENT ? numbers : numbers.set();
  // cppcheck-suppress readdirCalled ; no other thread has this folder stream
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

// Lists the folders once: most of the 256 names do not exist, and each would take several steps to look up.
ComNumbers MayBeThere() {
  if (const char* folder = secure_getenv(kPortFolder); folder != nullptr)
    return Listed(Path("%s/", folder), "com", 0);
  return Listed(Path("/dev/tavlyn/"), "com", 0) | Listed(Path("/dev/"), "ttyS", 1);
}

}  // namespace

Path ComPath(std::uint16_t number) {
  // With the variable set nothing outside its folder is ever opened.
  if (const char* folder = secure_getenv(kPortFolder); folder != nullptr)
    return Path("%s/com%u", folder, number);
  const Path shipped("/dev/tavlyn/com%u", number);
  return access(shipped.c_str(), F_OK) == 0 ? shipped : Path("/dev/ttyS%u", number - 1U);
}

void FindVirtualPorts(PortFlags flags) {
  const ComNumbers numbers = MayBeThere();
  for (std::uint16_t number = 1; number <= kHighestCom; ++number) {
    if (!numbers[number]) continue;
    const Path node = RealPath(ComPath(number));
    if (node.IsEmpty()) continue;
    const char* name = node.c_str() + node.View().rfind('/') + 1;
    if (IsVirtual(RealPath(Path("/sys/class/tty/%s/device", name)))) flags[number] = 1;
  }
}

}  // namespace tavlyn::platform
