// One exchange with the active card reader: a command of the table and what comes back.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "hid/report_channel.h"
#include "reader/commands.h"

namespace tavlyn {

// The two halves of a feature-report exchange; reply bytes of a command are b1 to b8.
struct ReportPair {
  Report request{};
  Report reply{};
};

enum class Xfer : std::uint8_t { kDone, kNotSent, kNoReply };

// A report with a command and its arguments.
Report CommandReport(const Command& command, std::uint8_t x = 0, std::uint8_t y = 0);

// Command out, reply in. Sets no error bit for a lost reply; that is the caller's to say.
Xfer FeatureXfer(const Command& command, Report& reply, std::uint8_t x = 0, std::uint8_t y = 0);

// Reply bytes of a command in the dialect of the active device: b1 to b8, or what the FA routine of its row
// brings. A failure over reports ors reportError into LastLibErr; the FA routines leave no error word.
using ReplyBytes = std::array<std::uint8_t, 8>;
bool Ask(const Command& command, std::uint32_t reportError, ReplyBytes& reply, std::uint8_t x = 0,
         std::uint8_t y = 0);

// A command and the data that it stores: a second report, or the data phase of the frame. Leaves no error
// bit.
bool Tell(const Command& command, std::span<const std::uint8_t> data, std::uint8_t x = 0, std::uint8_t y = 0);

// A command that is sent and not answered: a report alone, or a frame with a status.
bool Fire(const Command& command, std::uint8_t x = 0);

// The active device speaks FA frames.
bool OnSerialPort();

}  // namespace tavlyn
