// The USB identities that are built into the library.
#pragma once

#include <algorithm>
#include <iterator>

namespace tavlyn::ctl {

struct KnownIdentity {
  unsigned vid;
  unsigned pid;
};

#define TAVLYN_PAIR(vid, pid) {0x##vid, 0x##pid},
#define TAVLYN_ROW(vid, pid, vendor, filter) {0x##vid, 0x##pid},
inline constexpr KnownIdentity kKnownIdentities[] = {
#include "hid/identities.inc"
};

inline bool IsKnownIdentity(unsigned vid, unsigned pid) {
  return std::ranges::any_of(kKnownIdentities,
                             [&](const KnownIdentity& one) { return one.vid == vid && one.pid == pid; });
}

}  // namespace tavlyn::ctl
