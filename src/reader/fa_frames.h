// The binary dialect of serial readers.
//
//   host     FA INS P1 P2 P3 [data]
//   reader   INS [data] [SW1 SW2]       90 00 is success
//   refusal  SW1 SW2                    in place of the echo
#pragma once

#include <array>
#include <cstdint>

#include "core/wipe.h"
#include "core/wire.h"
#include "reader/commands.h"

namespace tavlyn::reader {

struct FaFrame {
  std::uint8_t cla = 0xFA;
  FilledBytes header{};                         // INS P1 P2 P3 and the two bytes that one command adds
  std::size_t sent = 4;                         // how many bytes of the header are sent
  std::size_t expected = 0;                     // how many data bytes the reply has
  Wiped<std::array<std::uint8_t, 256>> data{};  // to the reader, or what came from it
  std::uint8_t sw1 = 0;
  std::uint8_t sw2 = 0;
  // In the trace.
  std::size_t headerShown = kAllShown;
  std::size_t dataShown = kAllShown;

  FaFrame() = default;
  explicit FaFrame(const Command& command, Args args = {})
      : header(command.fa.With(args)),
        sent(command.fa.count),
        expected(command.form.faData == kFromP3 ? P3() : command.form.faData),
        dataShown(command.form.mayStoreKeys ? kNoneShown : kAllShown) {}
  [[nodiscard]] std::uint8_t P3() const { return header[3]; }
};

// All talk to the active device and leave its port open; true is success. Reply data stays in the frame
// whatever the status says, because callers look at it even then. A refusal is in data bytes 0 and 1.

// Status only.
bool FaSendStatus(FaFrame& frame);
// Echo, data, status.
bool FaRecvData(FaFrame& frame);
// Echo, then P3 data bytes go out, then the status.
bool FaSendData(FaFrame& frame);
// Echo and data, no status.
bool FaRecvBare(FaFrame& frame);
// Echo, data and status in one read, all of it counted as data; the pauses differ, too.
bool FaRecvWhole(FaFrame& frame);

// Runs the routine that the command's row names.
bool FaXfer(const Command& command, FaFrame& frame);

}  // namespace tavlyn::reader
