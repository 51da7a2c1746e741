// Card IDs: of the card on the reader, and those that the reader queued while nobody polled; and the other
// data that a reader has on the card.
#include <algorithm>
#include <array>
#include <span>

#include "api.h"
#include "core/openings.h"
#include "core/pause.h"
#include "core/state.h"
#include "core/trace.h"
#include "links/serial_port.h"
#include "reader/ascii.h"
#include "reader/exchange.h"
#include "reader/fa_frames.h"
#include "reader/product.h"

namespace tavlyn::reader {
namespace {

constexpr const char* kTag64 = "tavlyn_GetActiveID";
constexpr const char* kTag256 = "tavlyn_GetActiveID32";

constexpr std::size_t kIdAt = 4;  // in the data of an FA reply, whose byte 1 is the bit count
constexpr std::size_t kShortId = 8;
constexpr std::size_t kLongId = 32;
constexpr int kFaTries = 3;
constexpr std::uint32_t kBetweenTries = 50;

// The status with which a reader says that it has no ID. It counts only after a data phase: in place of the
// echo it is a refusal.
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
    std::ranges::copy(reply, std::span(bytes).subspan(page * reply.size()).begin());
  }
  if (!fetched || !Ask(command::kBitCount, TAVLYN_ERR_COMMAND, reply)) {
    LogErrorCode(kTag256);
    return 0;
  }
  Copy(bytes, id);
  return Counted(kTag256, reply[0]);
}

using Fetch = std::uint16_t (*)(std::span<std::uint8_t> id);

std::uint16_t FetchBy(Fetch byFa, Fetch byReports, std::uint8_t* buffer, std::int16_t length) {
  EntryOfActDev().LastLibErr = 0;
  const std::span<std::uint8_t> id = Cleared(buffer, length);
  if (InAscii()) return AsciiGetId(buffer, length);
  if (OnSerialPort()) return byFa(id);
  return InputIsReady() ? byReports(id) : std::uint16_t{0};
}

constexpr std::uint8_t kIdPages = 4;  // the fifth page has the rest
constexpr std::uint32_t kAfterFaPage = 100;

std::uint16_t Word(std::uint8_t low, std::uint8_t high) {
  return static_cast<std::uint16_t>(low | high << 8);
}

void Keep(std::uint8_t page, const ReplyBytes& reply) {
  shared.id.LastIDBytes = shared.buffers.QueuedID.id;
  if (page < kIdPages) {
    std::ranges::copy(reply, std::span(shared.buffers.QueuedID.id).subspan(page * reply.size()).begin());
    return;
  }
  shared.buffers.QueuedID.at33 = Word(reply[0], reply[1]);
  shared.buffers.QueuedID.at34 = reply[2];
  shared.buffers.QueuedID.at32 = static_cast<std::int16_t>(Word(reply[3], reply[4]));
  shared.buffers.QueuedID.at35 = reply[7];
}

constexpr std::uint8_t kCardDataPieces = 5;

}  // namespace

std::uint16_t FetchId(std::uint8_t* buffer, std::int16_t length) {
  return FetchBy(Id64ByFa, Id64ByReports, buffer, length);
}

std::uint16_t FetchId32(std::uint8_t* buffer, std::int16_t length) {
  return FetchBy(Id256ByFa, Id256ByReports, buffer, length);
}

std::uint32_t FetchQueuedId(std::uint16_t first, std::int16_t second) {
  EntryOfActDev().LastLibErr = 0;
  const auto options = static_cast<std::uint8_t>((first != 0 ? 1 : 0) | (second != 0 ? 2 : 0));
  const bool serial = OnSerialPort();
  // Over a serial link the last record deliberately stays until its bytes are replaced.
  if (!serial) shared.buffers.QueuedID = {};
  for (std::uint8_t page = 0; page <= kIdPages; ++page) {
    const Outcome fetched = Exchange(command::kQueuedId, {page, options});
    if (fetched.xfer != Xfer::kDone) {
      EntryOfActDev().LastLibErr |= TAVLYN_ERR_COMMAND;
      return 0;
    }
    Keep(page, fetched.reply);
    if (serial) Pause(kAfterFaPage);
  }
  return 1;
}

std::uint32_t QueuedIdPart(std::int16_t index) {
  if (index >= 0 && static_cast<std::size_t>(index) < kIdBytes) {
    return shared.buffers.QueuedID.id[static_cast<std::size_t>(index)];
  }
  switch (index) {
    case 32: return static_cast<std::uint32_t>(shared.buffers.QueuedID.at32);
    case 33: return shared.buffers.QueuedID.at33;
    case 34: return shared.buffers.QueuedID.at34;
    case 35: return shared.buffers.QueuedID.at35;
    default: return 0;
  }
}

}  // namespace tavlyn::reader

using namespace tavlyn;
using namespace tavlyn::reader;

std::uint32_t getActiveCardData() {
  if (!ReaderIsActive()) return shared.UnsupportedValue;
  EntryOfActDev().LastLibErr = 0;
  if (OnSerialPort()) {
    shared.buffers.cardData.fill(0);
    return 0;
  }
  for (std::uint8_t piece = 0; piece < kCardDataPieces; ++piece) {
    ReplyBytes reply;
    if (!Ask(command::kCardData, TAVLYN_ERR_COMMAND, reply, {piece})) return 0;
    std::ranges::copy(reply, std::span(shared.buffers.cardData).subspan(piece * reply.size()).begin());
  }
  return 1;
}

std::uint32_t getActiveCardData_byte(std::uint16_t index) {
  if (!ReaderIsActive()) return shared.UnsupportedValue;
  return index < shared.buffers.cardData.size() ? shared.buffers.cardData[index] : 0;
}
