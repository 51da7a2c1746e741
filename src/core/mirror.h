// The mirror, which is what an entry of the device table keeps of its device: the stored configurations of a
// reader, the settings of a magnetic-stripe reader, the records of a sonar sensor.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/fields.h"
#include "core/sonar_fields.h"

namespace tavlyn {

inline constexpr std::size_t kSepFldBytes = 128;
inline constexpr std::size_t kSepPageBytes = 8;
inline constexpr std::size_t kHashKeys = 2;
inline constexpr std::size_t kHashKeyBytes = 16;
inline constexpr std::size_t kExtBytes = 7;
inline constexpr std::size_t kEnhanceSecurityAt = 126;
// First byte of separator data that was never set.
inline constexpr std::uint8_t kSepFldUnset = 12;

// One stored configuration of a reader.
struct tsCfgSlot {
  std::uint32_t bCfgLoaded;  // a read filled the slot, or a file load marked it
  Records record;

  // What the next write must send.
  std::uint32_t bDirtyFmt;   // block 0
  std::uint32_t bDirtyTime;  // block 1
  std::uint32_t bDirtyDisp;  // block 2
  std::uint32_t bDirtyExt;   // block 3
  std::uint32_t bDirtySep;   // separated fields, hash keys

  // b1 to b7 of block 3 as read. Words 0 and 1 are by how much the parity counts exceed 15.
  std::array<std::uint16_t, kExtBytes> ExtBytes;
  std::array<std::uint8_t, kSepFldBytes> sFldSepData;
  std::array<std::array<std::uint8_t, kHashKeyBytes>, kHashKeys> HashKeyData;
  std::int32_t AZERTYShiftlock;
  std::int32_t ExtendedPrecisionMath;
  // These three exist on the host only; no block has them.
  std::int32_t b64BytesInPackets;
  std::int32_t bEasyReadMode;
  std::int32_t bPrependCSN;
  std::uint16_t CardType;
  std::uint16_t CardPriority;

  // The separator area, then the hash keys, then zeros: the first bytes of the area may announce more than it
  // holds.
  [[nodiscard]] std::uint8_t SepByteAt(std::size_t at) const {
    if (at < kSepFldBytes) return sFldSepData[at];
    const std::size_t key = at - kSepFldBytes;
    return key < kHashKeys * kHashKeyBytes ? HashKeyData[key / kHashKeyBytes][key % kHashKeyBytes]
                                           : std::uint8_t{0};
  }

  std::int16_t& operator[](FieldId field) { return record[field.record][field.word]; }
  std::int16_t operator[](FieldId field) const { return record[field.record][field.word]; }
};

namespace magstripe {
inline constexpr std::size_t kUserFields = 11;
inline constexpr std::size_t kFieldKeys = 16;
inline constexpr std::size_t kLeds = 5;
}  // namespace magstripe

// Which piece of a swipe the active ID is. Exists on the host only.
struct tsSorbaneIdSel {
  std::uint16_t Track;
  std::uint16_t Field;
  std::uint16_t Offset;
  std::uint16_t Length;
  std::uint16_t Termination;
};
inline constexpr tsSorbaneIdSel kIdSelAtLoad{2, 0, 0, 32, 255};

// The reader's recipe for turning a piece of a swipe into keystrokes.
struct tsSorbaneField {
  std::uint8_t Enable;
  std::uint8_t Skip;
  std::uint8_t Track;
  std::uint8_t Field;
  std::uint8_t ByteOffset;
  std::uint8_t Length;
  std::uint8_t Termination;
  std::uint8_t ShowSepSen;
  std::uint8_t ShowLRC;
  std::uint8_t IgnoreLRC;
  std::uint8_t nKeys;
  std::array<std::uint8_t, magstripe::kFieldKeys> Keybyte;
};

struct tsSorbaneCfg {
  tsSorbaneIdSel IdSel;
  std::uint16_t LUID;  // copy of the entry's, for the wire
  std::uint8_t HaltKBSend;
  std::uint8_t UseNumKP;
  std::uint8_t TrackEnables;  // bits 0 to 2
  std::uint8_t Beeper;        // upper nibble good read, lower bad: bit 3 long, bits 0 to 2 count
  std::array<std::uint8_t, magstripe::kLeds> LedColor;
  std::array<tsSorbaneField, magstripe::kUserFields> UserField;
  std::uint16_t KeyPressTime;  // milliseconds; sent in steps of 4
  std::uint16_t KeyReleaseTime;
};

// A magnetic-stripe reader.
struct tsSorbaneBlock {
  std::uint32_t bOpened;  // a search opened the device
  tsSorbaneCfg Cfg;
};

// A sonar sensor.
struct tsSonarBlock {
  std::uint32_t SonarOpMark;    // of the last halt or reset; nothing depends on it
  std::uint32_t bOpened;        // a search opened the device
  std::uint32_t bParmsValid;    // a read filled the records
  std::uint32_t bSonarChanged;  // what the next write must send
  std::uint32_t bWalkAwayChanged;
  std::uint32_t bWalkUpChanged;
  std::uint32_t bIdleChanged;
  SonarWords words;  // tsSonarParms, tsWalkAwayParms, tsWalkUpParms, tsIdleParms
};

}  // namespace tavlyn
