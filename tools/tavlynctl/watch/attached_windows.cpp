#include "platform/windows/hid_walk.h"
#include "tools/tavlynctl/reach/known_identities.h"
#include "tools/tavlynctl/session.h"
#include "tools/tavlynctl/watch/attached.h"

namespace tavlyn::ctl {
namespace {

// "\\?\hid#vid_7a31&pid_3bfa#…".
bool NamesKnownIdentity(const std::string& path) {
  unsigned vid = 0;
  unsigned pid = 0;
  const std::size_t ids = path.find('#');
  return ids != std::string::npos &&
         sscanf(path.c_str() + ids, "#%*3[vidVID]_%4x&%*3[pidPID]_%4x", &vid, &pid) == 2 &&
         IsKnownIdentity(vid, pid);
}

}  // namespace

std::optional<std::int64_t> StampOfNodes() { return std::nullopt; }

// Readers are listed as HID interfaces, the other products as keyboards, with other paths.
std::vector<std::string> AttachedHidPaths(std::uint32_t product) {
  using platform::HidClass;
  std::vector<std::string> paths;
  platform::HidLibraries libraries;
  if (!platform::BindHidLibraries(libraries)) return paths;
  platform::HidWalk walk;
  if (walk.Begin(libraries, product == kReaders ? HidClass::kHid : HidClass::kKeyboard)) {
    const char* path = nullptr;
    for (int index = 0;; ++index) {
      const platform::WalkStep step = walk.Member(libraries, index, path);
      if (step == platform::WalkStep::kEnd) break;
      if (step == platform::WalkStep::kPath && NamesKnownIdentity(path)) paths.emplace_back(path);
    }
    walk.End(libraries);
  }
  platform::FreeHidLibraries(libraries);
  return paths;
}

}  // namespace tavlyn::ctl
