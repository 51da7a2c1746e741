// The host's mirror of a magnetic-stripe reader, and what all of them share.
#pragma once

#include <array>
#include <cstdint>

namespace tavlyn {

inline constexpr std::size_t kSorbaneFields = 11;
inline constexpr std::size_t kSorbaneKeys = 16;
inline constexpr std::size_t kSorbaneLeds = 5;

// Which piece of a swipe the active ID is. Lives on the host alone.
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
  std::array<std::uint8_t, kSorbaneKeys> Keybyte;
};

struct tsSorbaneCfg {
  tsSorbaneIdSel IdSel;
  std::uint16_t LUID;  // copy of the entry's, for the wire
  std::uint8_t HaltKBSend;
  std::uint8_t UseNumKP;
  std::uint8_t TrackEnables;  // bits 0 to 2
  std::uint8_t Beeper;        // upper nibble good read, lower bad: bit 3 long, bits 0 to 2 count
  std::array<std::uint8_t, kSorbaneLeds> LedColor;
  std::array<tsSorbaneField, kSorbaneFields> UserField;
  std::uint16_t KeyPressTime;  // milliseconds; travels in steps of 4
  std::uint16_t KeyReleaseTime;
};

struct tsSorbaneBlock {
  std::uint32_t bOpened;  // a search opened the device
  tsSorbaneCfg Cfg;
};

// Report ID, then the packet of a transaction.
using SorbaneReport = std::array<std::uint8_t, 25>;
// Header, the data of a track, zeros.
using SorbaneTrack = std::array<std::uint8_t, 257>;

// One of each for the whole process; pointers that programs were given lead here.
struct SorbaneBuffers {
  SorbaneReport request;
  SorbaneReport reply;
  SorbaneTrack track;
  SorbaneTrack trackCopy;  // for byte by byte reading
  SorbaneTrack field;
  std::array<std::uint8_t, 32> queuedId;
  std::uint16_t queueCount;
  std::uint8_t queueState;
};
inline constinit SorbaneBuffers Sorbane{};

}  // namespace tavlyn
