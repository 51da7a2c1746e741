#include "reader/raw_payload.h"

#include <algorithm>
#include <array>

#include "core/state.h"
#include "reader/fa_frames.h"
#include "reader/transactions.h"

namespace tavlyn {
namespace {

constexpr std::int32_t kPayload = 8;
constexpr std::size_t kPositions = 10;
constexpr std::int16_t kSendFrom = 8;
constexpr std::uint32_t kNoSuchPosition = 2;

// Position 0 is the report ID's; the last one is never sent.
constinit std::array<std::uint8_t, kPositions> RawCmd{};
constinit std::array<std::uint8_t, kPositions> RawReply{};

bool Store(std::int16_t index, std::uint8_t value) {
  if (index < 0 || static_cast<std::size_t>(index) >= kPositions) return false;
  if (index == 0) {
    RawCmd.fill(0);
    RawReply.fill(0);
  }
  RawCmd[static_cast<std::size_t>(index)] = value;
  return true;
}

// The bytes are the whole header, its class byte first.
bool SendFrame() {
  FaFrame frame;
  frame.cla = RawCmd[1];
  std::copy_n(RawCmd.begin() + 2, 4, frame.header.begin());
  RawReply.fill(0);
  if (!FaRecv8(frame)) return false;
  // One position lower than the same bytes of a report; programs know the link and count with it.
  std::copy_n(frame.data.begin(), kPayload, RawReply.begin());
  return true;
}

}  // namespace

std::uint32_t SetRawCommand(std::int16_t index, std::uint8_t value) {
  const bool stored = Store(index, value);
  const std::uint32_t result = stored ? 1 : 0;
  if (index < kSendFrom) return result;
  RawCmd[0] = 0;
  if (OnSerialPort()) return SendFrame() ? result : 0;
  // A command that could not be sent deliberately counts as stored.
  if (!WriteFeatureReport(kPayload, ActDev, RawCmd.data())) return result;
  RawReply.fill(0);
  return ReadFeatureReport(kPayload, ActDev, RawReply.data()) ? 1 : 0;
}

std::uint32_t RawReplyByte(std::uint16_t index) {
  return index < kPositions ? RawReply[index] : kNoSuchPosition;
}

}  // namespace tavlyn
