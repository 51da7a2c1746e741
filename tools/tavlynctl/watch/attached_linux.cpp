#include <dlfcn.h>
#include <hidapi/hidapi.h>

#include <algorithm>

#include "tools/tavlynctl/reach/known_identities.h"
#include "tools/tavlynctl/watch/attached.h"

namespace tavlyn::ctl {

// The list comes from where the library has it: from the hidapi that it has loaded.
std::vector<std::string> AttachedHidPaths(std::uint32_t /*product*/) {
  std::vector<std::string> paths;
  void* loaded = dlopen("libhidapi-hidraw.so.0", RTLD_LAZY | RTLD_NOLOAD);
  if (loaded == nullptr) return paths;
  const auto list = reinterpret_cast<decltype(&hid_enumerate)>(dlsym(loaded, "hid_enumerate"));
  const auto forget =
      reinterpret_cast<decltype(&hid_free_enumeration)>(dlsym(loaded, "hid_free_enumeration"));
  hid_device_info* first = list != nullptr && forget != nullptr ? list(0, 0) : nullptr;
  for (const hid_device_info* one = first; one != nullptr; one = one->next) {
    if (one->path == nullptr || !IsKnownIdentity(one->vendor_id, one->product_id)) continue;
    if (std::ranges::find(paths, one->path) == paths.end()) paths.emplace_back(one->path);
  }
  if (first != nullptr) forget(first);
  dlclose(loaded);
  return paths;
}

}  // namespace tavlyn::ctl
