// Tracks of the last swipe and pieces of them. The reader has checked parity and LRC; nothing here does.
#pragma once

#include <cstdint>

#include "core/state.h"

namespace tavlyn::magstripe {

// Header, then the characters of track 1, 2 or 3, as read or (convert not 0) as text. All zeros when any
// block was lost.
Track& FetchTrack(std::uint16_t track, std::uint16_t convert);

// A piece of a track: the field-th one, from a character offset on, up to the character term or the end of
// the field.
struct Piece {
  std::uint16_t track;
  std::uint16_t field;
  std::uint16_t offset;
  std::uint16_t length;
  std::uint16_t term;
};
Track& FetchPiece(const Piece& piece, std::uint16_t convert);

}  // namespace tavlyn::magstripe
