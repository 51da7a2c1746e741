// Numbers for the system's own handles. Systems give a freed handle's value out again; copies of a table
// entry may outlive what they name, so the library's numbers only go up. There are as many as the system
// gives. A table needs no construction at run time and no destruction.
#pragma once

#include <memory>
#include <new>
#include <optional>

#include "platform/allocated.h"
#include "platform/platform.h"

namespace tavlyn::platform {

// One lock for all tables, which each takes for a few steps. It is the system's own: the standard library's
// is made and destroyed at run time on Windows.
void LockTables();
void UnlockTables();

template <typename Native>
class HandleTable {
 public:
  // Without memory for its number the native handle is closed, and kNoHandle is the answer.
  template <typename Close>
  Handle Add(Native native, Close close) {
    const Locked locked;
    auto* added = new (std::nothrow) Numbered{{}, last_ + 1, native, newest_};
    if (added == nullptr) {
      close(native);
      return kNoHandle;
    }
    newest_ = added;
    return ++last_;
  }

  std::optional<Native> Find(Handle handle) {
    const Locked locked;
    const Numbered* found = *PlaceOf(handle);
    return found != nullptr ? std::optional(found->native) : std::nullopt;
  }

  // The native handle is the caller's to close; nothing when it has been removed already.
  std::optional<Native> Remove(Handle handle) {
    const Locked locked;
    return RemoveAt(PlaceOf(handle));
  }

  // One after the other, until there is nothing left.
  std::optional<Native> RemoveNewest() {
    const Locked locked;
    return RemoveAt(&newest_);
  }

 private:
  struct Locked {
    Locked() { LockTables(); }
    ~Locked() { UnlockTables(); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
  };

  struct Numbered : Allocated {
    Handle handle;
    Native native;
    Numbered* older;
  };

  // Where it hangs in the list, or the end of the list.
  Numbered** PlaceOf(Handle handle) {
    Numbered** place = &newest_;
    while (*place != nullptr && (*place)->handle != handle) place = &(*place)->older;
    return place;
  }

  static std::optional<Native> RemoveAt(Numbered** place) {
    const std::unique_ptr<Numbered> removed(*place);
    if (removed == nullptr) return std::nullopt;
    *place = removed->older;
    return removed->native;
  }

  Numbered* newest_ = nullptr;
  Handle last_ = 0;
};

}  // namespace tavlyn::platform
