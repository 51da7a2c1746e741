#include "reader/transactions.h"

#include <algorithm>

#include "core/state.h"
#include "reader/fa_frames.h"

namespace tavlyn {

Report CommandReport(const Command& command, std::uint8_t x, std::uint8_t y) {
  Report report{};
  std::ranges::copy(Fill(command.report, x, y), report.begin() + 1);
  return report;
}

Xfer FeatureXfer(const Command& command, Report& reply, std::uint8_t x, std::uint8_t y) {
  if (!SendReport(CommandReport(command, x, y))) return Xfer::kNotSent;
  return FetchReport(reply) ? Xfer::kDone : Xfer::kNoReply;
}

bool OnSerialPort() { return EntryOfActDev().LinkKind == kBySerialPort; }

bool Ask(const Command& command, std::uint32_t reportError, ReplyBytes& reply, std::uint8_t x,
         std::uint8_t y) {
  if (OnSerialPort()) {
    FaFrame frame(command, x, y);
    const bool answered = FaXfer(command, frame);
    std::copy_n(frame.data.begin(), reply.size(), reply.begin());
    return answered;
  }
  Report report{};
  const bool answered = FeatureXfer(command, report, x, y) == Xfer::kDone;
  std::copy_n(report.begin() + 1, reply.size(), reply.begin());
  if (!answered) EntryOfActDev().LastLibErr |= reportError;
  return answered;
}

bool Tell(const Command& command, std::span<const std::uint8_t> data, std::uint8_t x, std::uint8_t y) {
  if (OnSerialPort()) {
    FaFrame frame(command, x, y);
    std::ranges::copy(data, frame.data.begin());
    return FaXfer(command, frame);
  }
  Report report{};
  std::copy_n(data.begin(), std::min(data.size(), report.size() - 1), report.begin() + 1);
  return SendReport(CommandReport(command, x, y)) && SendReport(report);
}

bool Fire(const Command& command, std::uint8_t x) {
  if (!OnSerialPort()) return SendReport(CommandReport(command, x));
  FaFrame frame(command, x, 0);
  return FaXfer(command, frame);
}

}  // namespace tavlyn
