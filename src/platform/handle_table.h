// Numbers for the system's own handles. Systems reuse the value of a closed handle, but copies of a table
// entry may outlive what they name, so the library's numbers only go up. A table has no limit of its own and
// needs neither construction at run time nor destruction.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <new>
#include <optional>

#include "platform/allocated.h"
#include "platform/platform.h"

namespace tavlyn::platform {

// One lock for all tables, held for a few steps at a time. It is the system's own, because the standard
// library's is constructed and destroyed at run time on Windows.
void LockTables();
void UnlockTables();

template <typename Native>
class HandleTable {
 public:
  // Without memory for its number the native handle is closed and the result is kNoHandle.
  template <typename Close>
  Handle Add(Native native, Close close) {
    const Locked locked;
    Numbered*& newest = newest_[(last_ + 1) % kLists];
    auto* added = new (std::nothrow) Numbered{{}, last_ + 1, native, newest};
    if (added == nullptr) {
      close(native);
      return kNoHandle;
    }
    newest = added;
    return ++last_;
  }

  std::optional<Native> Find(Handle handle) {
    const Locked locked;
    const Numbered* found = *PlaceOf(handle);
    return found != nullptr ? std::optional(found->native) : std::nullopt;
  }

  // The caller has to close the native handle; nothing when it has been removed already.
  std::optional<Native> Remove(Handle handle) {
    const Locked locked;
    return RemoveAt(PlaceOf(handle));
  }

  // For removing one after the other until nothing is left.
  std::optional<Native> RemoveNewest() {
    const Locked locked;
    return RemoveAt(&*std::ranges::max_element(
        newest_, {}, [](const Numbered* one) { return one != nullptr ? one->handle : 0; }));
  }

 private:
  // Numbers go to the lists in turn, so that each is short.
  static constexpr std::size_t kLists = 64;

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

  // The pointer in the list that leads to it, or the one at the end.
  Numbered** PlaceOf(Handle handle) {
    Numbered** place = &newest_[handle % kLists];
    while (*place != nullptr && (*place)->handle != handle) place = &(*place)->older;
    return place;
  }

  static std::optional<Native> RemoveAt(Numbered** place) {
    const std::unique_ptr<Numbered> removed(*place);
    if (removed == nullptr) return std::nullopt;
    *place = removed->older;
    return removed->native;
  }

  std::array<Numbered*, kLists> newest_{};  // each the beginning of a list
  Handle last_ = 0;
};

}  // namespace tavlyn::platform
