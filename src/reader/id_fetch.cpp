#include "reader/id_fetch.h"

#include <algorithm>
#include <array>

#include "api.h"
#include "core/openings.h"
#include "core/pause.h"
#include "core/trace.h"
#include "links/serial_port.h"
#include "reader/ascii.h"
#include "reader/exchange.h"
#include "reader/fa_frames.h"

namespace tavlyn {
namespace {

constexpr const char* kTag64 = "tavlyn_GetActiveID";
constexpr const char* kTag256 = "tavlyn_GetActiveID32";

constexpr std::size_t kIdAt = 4;  // in the data of an FA reply, whose byte 1 is the bit count
constexpr std::size_t kShortId = 8;
constexpr std::size_t kLongId = 32;
constexpr int kFaTries = 3;
constexpr std::uint32_t kBetweenTries = 50;

// The reader's way to say that it has no ID. Only behind a data phase: in place of the echo it is a refusal.
bool SaysNoId(const FaFrame& frame) { return frame.sw1 == 0x6A && frame.sw2 == 0x82; }

std::span<std::uint8_t> Cleared(std::uint8_t* buffer, std::int16_t length) {
  const std::span<std::uint8_t> id(buffer, static_cast<std::size_t>(length));
  std::ranges::fill(id, std::uint8_t{0});
  return id;
}

void Copy(std::span<const std::uint8_t> from, std::span<std::uint8_t> to) {
  std::copy_n(from.begin(), std::min(from.size(), to.size()), to.begin());
}

std::uint16_t Counted(const char* tag, std::uint16_t bits) {
  LogLine(tag, "Card BitCount: %d", bits);
  return bits;
}

// A keyboard-class device answers an ID read only when its queue of input reports is not empty.
bool InputIsReady() {
  const tsDevEntry& entry = EntryOfActDev();
  if (entry.bReportId1 == 0) return true;
  std::array<std::uint8_t, 9> report{1};
  return ReadInputReport(entry.hDev, report);
}

std::uint16_t Id64ByFa(std::span<std::uint8_t> id) {
  FaFrame frame(command::kId64);
  int tries = 0;
  while (!FaXfer(command::kId64, frame) && !SaysNoId(frame)) {
    if (SerialPort* port = EntryOfActDev().pSerialPort; port != nullptr) port->Flush();
    Pause(kBetweenTries);
    if (++tries < kFaTries) continue;
    EntryOfActDev().LastLibErr |= TAVLYN_ERR_COMMAND;
    LogFailure(kTag64);
    return 0;
  }
  if (id.size() < kShortId) return 0;
  Copy(std::span(frame.data).subspan(kIdAt, kShortId), id);
  return Counted(kTag64, frame.data[1]);
}

std::uint16_t Id256ByFa(std::span<std::uint8_t> id) {
  FaFrame frame(command::kId256);
  if (!FaXfer(command::kId256, frame)) {
    if (SaysNoId(frame)) return 0;
    // Unlike the short fetch this one deliberately goes on with whatever the frame holds.
    EntryOfActDev().LastLibErr |= TAVLYN_ERR_COMMAND;
    LogErrorCode(kTag256);
  }
  if (id.size() < kLongId) return 0;
  Copy(std::span(frame.data).subspan(kIdAt, kLongId), id);
  return Counted(kTag256, frame.data[1]);
}

std::uint16_t Id64ByReports(std::span<std::uint8_t> id) {
  ReplyBytes bytes;
  ReplyBytes count;
  const bool fetched = Ask(command::kId64, TAVLYN_ERR_COMMAND, bytes);
  if (fetched) Copy(bytes, id);
  if (!fetched || !Ask(command::kBitCount, TAVLYN_ERR_COMMAND, count)) {
    LogFailure(kTag64);
    return 0;
  }
  return Counted(kTag64, count[0]);
}

std::uint16_t Id256ByReports(std::span<std::uint8_t> id) {
  std::array<std::uint8_t, kLongId> bytes;
  ReplyBytes reply;
  bool fetched = true;
  for (std::uint8_t page = 0; fetched && page < kLongId / reply.size(); ++page) {
    fetched = Ask(command::kId256, TAVLYN_ERR_COMMAND, reply, {page});
    std::ranges::copy(reply, bytes.begin() + static_cast<std::ptrdiff_t>(page * reply.size()));
  }
  if (!fetched || !Ask(command::kBitCount, TAVLYN_ERR_COMMAND, reply)) {
    LogErrorCode(kTag256);
    return 0;
  }
  Copy(bytes, id);
  return Counted(kTag256, reply[0]);
}

using Fetch = std::uint16_t (*)(std::span<std::uint8_t> id);

std::uint16_t FetchId(std::uint8_t* buffer, std::int16_t length, Fetch byFa, Fetch byReports) {
  EntryOfActDev().LastLibErr = 0;
  const std::span<std::uint8_t> id = Cleared(buffer, length);
  if (InAscii()) return AsciiGetId(buffer, length);
  if (OnSerialPort()) return byFa(id);
  return InputIsReady() ? byReports(id) : std::uint16_t{0};
}

}  // namespace

std::uint16_t FetchId64(std::uint8_t* buffer, std::int16_t length) {
  return FetchId(buffer, length, Id64ByFa, Id64ByReports);
}

std::uint16_t FetchId256(std::uint8_t* buffer, std::int16_t length) {
  return FetchId(buffer, length, Id256ByFa, Id256ByReports);
}

}  // namespace tavlyn
