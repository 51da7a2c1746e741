// One exchange with the active card reader, by reports or frames as its link wants: a command of the table
// and what comes back. The text dialect has no commands of its own here; see ascii.h.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "hid/report_channel.h"
#include "reader/commands.h"

namespace tavlyn::reader {

// Whether the active device is spoken to in text, as only serial readers are; see ascii.h.
bool InAscii();

// A report with a command and its arguments.
Report CommandReport(const Command& command, Args args = {});

// How an exchange ended. A frame that fails has just one value, and leaves no error bit.
enum class Xfer : std::uint8_t {
  kDone,
  kFrameFailed,
  kNotSent,  // the report was refused, or the command has none
  kNoReply,  // no report came back
  kOther,    // the reply does not echo what it should
};

// Whether a report failed, the request or the reply.
constexpr bool ReportLost(Xfer xfer) { return xfer == Xfer::kNotSent || xfer == Xfer::kNoReply; }

using ReplyBytes = std::array<std::uint8_t, 8>;

struct Outcome {
  Xfer xfer;
  ReplyBytes reply;  // from where the command's row says it begins; the rest is 0
  bool blank;        // no reply, or a report of nothing but zeros, its ID included
};

// Sends a command and takes its reply. A lost reply sets no error bit, which is up to the
// caller.
Outcome Exchange(const Command& command, Args args = {});

// The same when only the reply matters. A failure over reports ors reportError into LastLibErr.
bool Ask(const Command& command, std::uint32_t reportError, ReplyBytes& reply, Args args = {});

// Sends a command and the data that it stores, as a second report or as the data phase of the frame.
Xfer Tell(const Command& command, std::span<const std::uint8_t> data, Args args = {});

// Sends a command without reply data: a report alone, or a frame that only a status answers.
Xfer Fire(const Command& command, Args args = {});

}  // namespace tavlyn::reader
