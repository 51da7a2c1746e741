// The host's mirror of one stored configuration of a reader.
#pragma once

#include <array>
#include <cstdint>

#include "core/fields.h"

namespace tavlyn {

inline constexpr std::size_t kSepFldBytes = 128;
inline constexpr std::size_t kSepPageBytes = 8;
inline constexpr std::size_t kHashKeys = 2;
inline constexpr std::size_t kHashKeyBytes = 16;
inline constexpr std::size_t kExtBytes = 7;
inline constexpr std::size_t kEnhanceSecurityAt = 126;
// First byte of separator data that was never set.
inline constexpr std::uint8_t kSepFldUnset = 12;

struct tsCfgSlot {
  std::uint32_t bCfgLoaded;  // a read filled the slot; nothing else sets it
  std::array<RecordWords, kRecordCount> record;

  // What the next write must send.
  std::uint32_t bDirtyFmt;   // block 0
  std::uint32_t bDirtyTime;  // block 1
  std::uint32_t bDirtyDisp;  // block 2
  std::uint32_t bDirtyExt;   // block 3
  std::uint32_t bDirtySep;   // separated fields, hash keys

  // b1 to b7 of block 3 as read. Words 0 and 1 are what the parity counts exceed 15 by.
  std::array<std::uint16_t, kExtBytes> ExtBytes;
  std::array<std::uint8_t, kSepFldBytes> sFldSepData;
  std::array<std::array<std::uint8_t, kHashKeyBytes>, kHashKeys> HashKeyData;
  std::int32_t AZERTYShiftlock;
  std::int32_t ExtendedPrecisionMath;
  // These three live on the host alone; no block carries them.
  std::int32_t b64BytesInPackets;
  std::int32_t bEasyReadMode;
  std::int32_t bPrependCSN;
  std::uint16_t CardType;
  std::uint16_t CardPriority;

  // The separator area, behind it the hash keys, then zeros: what its first bytes announce may be longer than
  // it is.
  [[nodiscard]] std::uint8_t SepByteAt(std::size_t at) const {
    if (at < kSepFldBytes) return sFldSepData[at];
    const std::size_t key = at - kSepFldBytes;
    return key < kHashKeys * kHashKeyBytes ? HashKeyData[key / kHashKeyBytes][key % kHashKeyBytes]
                                           : std::uint8_t{0};
  }

  std::int16_t& operator[](FieldId field) { return record[field.record][field.word]; }
  std::int16_t operator[](FieldId field) const { return record[field.record][field.word]; }
};

}  // namespace tavlyn
