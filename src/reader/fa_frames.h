// The binary dialect of serial readers.
//
//   host     FA INS P1 P2 P3 [data]
//   reader   INS [data] [SW1 SW2]       90 00 is success
//   refusal  SW1 SW2                    in place of the echo
#pragma once

#include <array>
#include <cstdint>

#include "core/wipe.h"
#include "reader/commands.h"

namespace tavlyn {

struct FaFrame {
  std::uint8_t cla = 0xFA;
  std::array<std::uint8_t, 6> header{};         // INS P1 P2 P3 and the two bytes that one command adds
  Wiped<std::array<std::uint8_t, 256>> data{};  // to the reader, or what came from it
  std::uint8_t sw1 = 0;
  std::uint8_t sw2 = 0;

  FaFrame() = default;
  FaFrame(const Command& command, std::uint8_t x, std::uint8_t y) : header(Fill(command.fa, x, y)) {}
  [[nodiscard]] std::uint8_t P3() const { return header[3]; }
};

// All speak with the active device and leave its port open; true is success. Reply data stays in the frame
// whatever the status says, since callers look at it then. A refusal stands in data bytes 0 and 1.

// Status only.
bool FaSendStatus(FaFrame& frame);
// Echo, data, status. The data count is rxHint - 1, or P3 when rxHint is 0; txCount header bytes follow CLA.
bool FaRecvData(FaFrame& frame, std::size_t txCount, std::size_t rxHint);
// Echo, then P3 data bytes go out, then the status.
bool FaSendData(FaFrame& frame);
// Echo and data, no status.
bool FaRecv8(FaFrame& frame);
bool FaRecvN(FaFrame& frame, std::size_t n);

// The routine of the command's row.
bool FaXfer(const Command& command, FaFrame& frame);
// The same, once more if it fails.
bool FaXferTwice(const Command& command, FaFrame& frame);

}  // namespace tavlyn
