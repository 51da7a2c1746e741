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

void SetLockHolder(const std::string& name) { LockHolder() = name; }

void DeviceLocks::Take(const std::string& path, const std::string& device) {
  const auto isHere = [&](const std::unique_ptr<DeviceLock>& one) { return one->Path() == path; };
  if (std::ranges::any_of(held_, isHere)) return;
  auto lock = std::make_unique<DeviceLock>(path);
  for (int tries = 1; !lock->Try(LockHolder()); ++tries) {
    if (tries == kLockTries) {
      const std::string& holder = lock->Holder();
      throw Failure(kNoPermission, device + " is in use by " + (holder.empty() ? "another program" : holder));
    }
    std::this_thread::sleep_for(kBetweenTries);
  }
  held_.push_back(std::move(lock));
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
