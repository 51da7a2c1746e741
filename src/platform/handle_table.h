// Numbers for the system's own handles. Systems give a freed handle's value out again; copies of a table
// entry may outlive what they name, so the library's numbers only go up.
#pragma once

#include <map>
#include <mutex>
#include <optional>

#include "platform/platform.h"

namespace tavlyn::platform {

template <typename Native>
class HandleTable {
 public:
  Handle Add(Native native) {
    const std::lock_guard lock(mutex_);
    natives_.emplace(++last_, native);
    return last_;
  }

  std::optional<Native> Find(Handle handle) {
    const std::lock_guard lock(mutex_);
    const auto found = natives_.find(handle);
    if (found == natives_.end()) return std::nullopt;
    return found->second;
  }

  // The native handle is the caller's to close; nothing when it has been removed already.
  std::optional<Native> Remove(Handle handle) {
    const std::lock_guard lock(mutex_);
    const auto found = natives_.find(handle);
    if (found == natives_.end()) return std::nullopt;
    const Native native = found->second;
    natives_.erase(found);
    return native;
  }

 private:
  std::mutex mutex_;
  std::map<Handle, Native> natives_;
  Handle last_ = 0;
};

}  // namespace tavlyn::platform
