// Commands that an application spells out byte by byte.
#include <algorithm>

#include "core/state.h"
#include "reader/exchange.h"
#include "reader/fa_frames.h"
#include "reader/product.h"

namespace tavlyn::reader {
namespace {

constexpr std::int32_t kPayload = 8;
constexpr std::int16_t kSendFrom = 8;
constexpr std::uint32_t kNoSuchPosition = 2;

bool Store(std::int16_t index, std::uint8_t value) {
  if (index < 0 || static_cast<std::size_t>(index) >= shared.buffers.RawCmd.size()) return false;
  if (index == 0) {
    shared.buffers.RawCmd.fill(0);
    shared.buffers.RawReply.fill(0);
  }
  shared.buffers.RawCmd[static_cast<std::size_t>(index)] = value;
  return true;
}

// The application's bytes are the whole header, class byte first.
bool SendFrame() {
  FaFrame frame;
  frame.cla = shared.buffers.RawCmd[1];
  std::copy_n(shared.buffers.RawCmd.begin() + 2, 4, frame.header.begin());
  shared.buffers.RawReply.fill(0);
  frame.expected = kPayload;
  frame.headerShown = 1;
  frame.dataShown = kNoneShown;
  if (!FaRecvBare(frame)) return false;
  // One position lower than the same bytes of a report; programs rely on it.
  std::copy_n(frame.data.begin(), kPayload, shared.buffers.RawReply.begin());
  return true;
}

}  // namespace

std::uint32_t SetRawByte(std::int16_t index, std::uint8_t value) {
  const bool stored = Store(index, value);
  const std::uint32_t result = stored ? 1 : 0;
  if (index < kSendFrom) return result;
  shared.buffers.RawCmd[0] = 0;
  if (OnSerialPort()) return SendFrame() ? result : 0;
  // A command that could not be sent deliberately counts as stored.
  if (!WriteFeatureReport(kPayload, shared.ActDev, shared.buffers.RawCmd.data(), kOpcodeShown)) return result;
  shared.buffers.RawReply.fill(0);
  return ReadFeatureReport(kPayload, shared.ActDev, shared.buffers.RawReply.data(), kNoneShown) ? 1 : 0;
}

std::uint32_t RawReplyByte(std::uint16_t index) {
  return index < shared.buffers.RawReply.size() ? shared.buffers.RawReply[index] : kNoSuchPosition;
}

}  // namespace tavlyn::reader
