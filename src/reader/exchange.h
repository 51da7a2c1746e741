// One exchange with the active card reader in the dialect of its link: a command of the table and what comes
// back.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "hid/report_channel.h"
#include "reader/commands.h"

namespace tavlyn::reader {

// The active device speaks FA frames.
bool OnSerialPort();

// The active device is spoken to in text, see ascii.h: only serial readers ever are.
bool InAscii();

// A report with a command and its arguments.
Report CommandReport(const Command& command, Args args = {});

// How an exchange ended. Of a frame only its failure is told, and by itself it leaves no error word.
enum class Xfer : std::uint8_t {
  kDone,
  kFrameFailed,
  kNotSent,  // a report was refused, or the command has none
  kNoReply,  // no report came back
  kOther,    // the reply does not repeat what it should
};

// Over reports one half or the other failed.
constexpr bool ReportLost(Xfer xfer) { return xfer == Xfer::kNotSent || xfer == Xfer::kNoReply; }

using ReplyBytes = std::array<std::uint8_t, 8>;

struct Outcome {
  Xfer xfer;
  ReplyBytes reply;  // from where the row of the command says that it begins; the rest is 0
  bool blank;        // nothing came, or a report of zeros alone, its ID included
};

// Command out, reply in. Sets no error bit; that is the caller's to say.
Outcome Exchange(const Command& command, Args args = {});

// The same for the reply alone. A failure over reports ors reportError into LastLibErr.
bool Ask(const Command& command, std::uint32_t reportError, ReplyBytes& reply, Args args = {});

// A command and the data that it stores: a second report, or the data phase of the frame.
Xfer Tell(const Command& command, std::span<const std::uint8_t> data, Args args = {});

// A command that is sent and not answered: a report alone, or a frame with a status.
Xfer Fire(const Command& command, Args args = {});

}  // namespace tavlyn::reader
