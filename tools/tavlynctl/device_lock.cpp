#include "tools/tavlynctl/device_lock.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {
namespace {

// Together longer than most commands take.
constexpr int kLockTries = 20;
constexpr std::chrono::milliseconds kBetweenTries(100);

std::string& LockHolder() {
  static std::string name = kProgram;
  return name;
}

}  // namespace

Failure InUse(const std::string& device, const std::string& holder) {
  return {kNoPermission, device + " is in use by " + holder};
}

void SetLockHolder(const std::string& name) { LockHolder() = name; }

std::string DeviceLocks::Try(const std::string& path) {
  const auto isHere = [&](const std::unique_ptr<DeviceLock>& one) { return one->Path() == path; };
  if (std::ranges::any_of(held_, isHere)) return {};
  auto lock = std::make_unique<DeviceLock>(path);
  if (!lock->Try(LockHolder())) return lock->Holder().empty() ? "another program" : lock->Holder();
  held_.push_back(std::move(lock));
  return {};
}

void DeviceLocks::Take(const std::string& path, const std::string& device) {
  for (int tries = 1;; ++tries) {
    const std::string holder = Try(path);
    if (holder.empty()) return;
    if (tries == kLockTries) throw InUse(device, holder);
    std::this_thread::sleep_for(kBetweenTries);
  }
}

void DeviceLocks::Keep(const std::vector<std::string>& paths) {
  std::erase_if(held_, [&](const auto& one) { return std::ranges::find(paths, one->Path()) == paths.end(); });
}

// Devices have the same paths in every simulator, which these variables tell apart.
std::string LockFileName(const std::string& path) {
  std::string place = path;
  for (const char* variable : {"TAVLYNSIM_SOCKET", "TAVLYNAPI_PORT_DIR"}) {
    const char* value = std::getenv(variable);
    place += '\n' + std::string(value != nullptr ? value : "");
  }
  return "tavlynctl-" + HexHash(place) + ".lock";
}

}  // namespace tavlyn::ctl
