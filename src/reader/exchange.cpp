#include "reader/exchange.h"

#include <algorithm>

#include "core/state.h"
#include "core/wipe.h"
#include "reader/fa_frames.h"

namespace tavlyn::reader {
namespace {

bool IsZero(std::uint8_t byte) { return byte == 0; }

// Tries the frame as often as its row says, rebuilding it each time because a refusal overwrites the data.
bool XferFrame(const Command& command, Args args, std::span<const std::uint8_t> data, FaFrame& frame) {
  for (int tries = command.form.faTries; tries > 0; --tries) {
    frame = FaFrame(command, args);
    std::ranges::copy(data, frame.data.begin());
    if (FaXfer(command, frame)) return true;
  }
  return false;
}

Xfer StoreByFrame(const Command& command, Args args, std::span<const std::uint8_t> data) {
  FaFrame frame;
  return XferFrame(command, args, data, frame) ? Xfer::kDone : Xfer::kFrameFailed;
}

Outcome ExchangeFrame(const Command& command, Args args) {
  FaFrame frame;
  const bool done = XferFrame(command, args, {}, frame);
  const bool echoed =
      std::equal(frame.data.begin(), frame.data.begin() + command.form.faEchoed, frame.header.begin() + 1);
  Outcome outcome{};
  outcome.xfer = !done ? Xfer::kFrameFailed : echoed ? Xfer::kDone : Xfer::kOther;
  outcome.blank = !done;
  std::copy_n(frame.data.begin() + command.form.faAt, outcome.reply.size(), outcome.reply.begin());
  return outcome;
}

Outcome ExchangeReports(const Command& command, Args args) {
  const Report request = CommandReport(command, args);
  if (command.report.count == 0 || !SendReport(request)) return {Xfer::kNotSent, {}, true};
  Report report{};
  const bool done = FetchReport(report);
  const bool echoed =
      std::equal(report.begin() + 1, report.begin() + 1 + command.form.echoed, request.begin() + 1);
  Outcome outcome{};
  outcome.xfer = !done ? Xfer::kNoReply : echoed ? Xfer::kDone : Xfer::kOther;
  outcome.blank = std::ranges::all_of(report, IsZero);
  std::copy(report.begin() + command.form.replyAt, report.end(), outcome.reply.begin());
  return outcome;
}

}  // namespace

bool InAscii() { return OnSerialPort() && shared.reader.AsciiProtocol != 0; }

Report CommandReport(const Command& command, Args args) {
  Report report{};
  std::ranges::copy(command.report.With(args), report.begin() + 1);
  return report;
}

Outcome Exchange(const Command& command, Args args) {
  return OnSerialPort() ? ExchangeFrame(command, args) : ExchangeReports(command, args);
}

bool Ask(const Command& command, std::uint32_t reportError, ReplyBytes& reply, Args args) {
  const Outcome outcome = Exchange(command, args);
  reply = outcome.reply;
  if (ReportLost(outcome.xfer)) EntryOfActDev().LastLibErr |= reportError;
  return outcome.xfer == Xfer::kDone;
}

Xfer Tell(const Command& command, std::span<const std::uint8_t> data, Args args) {
  if (OnSerialPort()) return StoreByFrame(command, args, data);
  Wiped<Report> report{};
  const auto room = std::span(report).subspan(command.form.replyAt);
  std::copy_n(data.begin(), std::min(data.size(), room.size()), room.begin());
  const std::size_t shown = command.form.mayStoreKeys ? kNoneShown : kAllShown;
  return SendReport(CommandReport(command, args)) && SendReport(report, shown) ? Xfer::kDone : Xfer::kNotSent;
}

Xfer Fire(const Command& command, Args args) {
  if (OnSerialPort()) return StoreByFrame(command, args, {});
  return SendReport(CommandReport(command, args)) ? Xfer::kDone : Xfer::kNotSent;
}

}  // namespace tavlyn::reader
