#include <dlfcn.h>
#include <hidapi/hidapi.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>

#include "tools/tavlynctl/reach/known_identities.h"
#include "tools/tavlynctl/watch/attached.h"

namespace tavlyn::ctl {

// A folder's time changes with what is in it. Simulated devices have no nodes.
std::optional<std::int64_t> StampOfNodes() {
  constexpr std::int64_t kSecond = 1'000'000'000;
  struct stat nodes {};
  if (std::getenv("TAVLYNSIM_SOCKET") != nullptr || stat("/dev", &nodes) != 0) return std::nullopt;
  return nodes.st_mtim.tv_sec * kSecond + nodes.st_mtim.tv_nsec;
}

// The list comes from where the library has it: from the hidapi that it has loaded.
std::vector<std::string> AttachedHidPaths(std::uint32_t product) {
  std::vector<std::string> paths;
  void* loaded = dlopen("libhidapi-hidraw.so.0", RTLD_LAZY | RTLD_NOLOAD);
  if (loaded == nullptr) return paths;
  const auto list = reinterpret_cast<decltype(&hid_enumerate)>(dlsym(loaded, "hid_enumerate"));
  const auto forget =
      reinterpret_cast<decltype(&hid_free_enumeration)>(dlsym(loaded, "hid_free_enumeration"));
  hid_device_info* first = list != nullptr && forget != nullptr ? list(0, 0) : nullptr;
  for (const hid_device_info* one = first; one != nullptr; one = one->next) {
    if (one->path == nullptr || !MayBe(product, one->vendor_id, one->product_id)) continue;
    if (std::ranges::find(paths, one->path) == paths.end()) paths.emplace_back(one->path);
  }
  if (first != nullptr) forget(first);
  dlclose(loaded);
  return paths;
}

}  // namespace tavlyn::ctl
