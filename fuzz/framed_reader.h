// A reader that speaks frames, at the far end of any line. Bit 0 of the input's first byte makes it a plus
// reader; unless bit 7 is set its connect succeeds, and then it answers as it likes. The second byte leaves
// calls out; the third is the most bytes that arrive at once.
#pragma once

#include <cstdint>

#include "fuzz/any_line.h"
#include "fuzz/reader_calls.h"
#include "sim/devices/reader.h"

namespace tavlyn::fuzz {

template <typename Model>
class FramedReader {
 public:
  explicit FramedReader(Input& input)
      : kind_(input.Byte()),
        calls_(input.Byte()),
        piece_(input.Byte()),
        model((kind_ & 1) == 0 ? sim::Reader::Plain() : sim::Reader::Plus(3)),
        line(model, input) {}

  template <typename Connect>
  void Meet(Connect connect) {
    const bool mayFail = (kind_ & 0x80) != 0;
    SetConnectProduct(1);
    if (mayFail) line.Turn(piece_);
    const bool connected = connect() == 1;
    Require(connected || mayFail);
    line.Turn(piece_);
    if (GetDevCnt() > 0) TalkToReader(calls_);
  }

 private:
  std::uint8_t kind_, calls_, piece_;

 public:
  Model model;
  AnyFrameLine line;
};

}  // namespace tavlyn::fuzz
