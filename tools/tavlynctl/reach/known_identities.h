// The USB identities that are built into the library.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>

namespace tavlyn::ctl {

inline constexpr std::uint32_t kFromTable = 0;

struct KnownIdentity {
  std::uint32_t product;  // that looks for it; several more are in a table
  unsigned vid;
  unsigned pid;
};

#define TAVLYN_PAIR(kind, vid, pid) {kind, 0x##vid, 0x##pid},
#define TAVLYN_ROW(vid, pid, vendor, filter) {kFromTable, 0x##vid, 0x##pid},
inline constexpr KnownIdentity kKnownIdentities[] = {
#include "hid/identities.inc"
};

inline bool IsKnownIdentity(unsigned vid, unsigned pid) {
  return std::ranges::any_of(kKnownIdentities,
                             [&](const KnownIdentity& one) { return one.vid == vid && one.pid == pid; });
}

// Whether a device of that identity may be of that product: what another one looks for never is.
inline bool MayBe(std::uint32_t product, unsigned vid, unsigned pid) {
  return std::ranges::any_of(kKnownIdentities, [&](const KnownIdentity& one) {
    return one.vid == vid && one.pid == pid && (one.product == product || one.product == kFromTable);
  });
}

}  // namespace tavlyn::ctl
