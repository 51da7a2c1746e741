#include "reader/queued_id.h"

#include <algorithm>
#include <array>

#include "api/types.h"
#include "core/pause.h"
#include "core/state.h"
#include "reader/exchange.h"

namespace tavlyn {
namespace {

constexpr std::uint8_t kIdPages = 4;  // the fifth page brings the rest
constexpr std::uint32_t kAfterFaPage = 100;

std::uint16_t Word(std::uint8_t low, std::uint8_t high) {
  return static_cast<std::uint16_t>(low | high << 8);
}

void Keep(std::uint8_t page, const ReplyBytes& reply) {
  shared.id.LastIDBytes = shared.buffers.QueuedID.id;
  if (page < kIdPages) {
    std::ranges::copy(reply,
                      shared.buffers.QueuedID.id.begin() + static_cast<std::ptrdiff_t>(page * reply.size()));
    return;
  }
  shared.buffers.QueuedID.at33 = Word(reply[0], reply[1]);
  shared.buffers.QueuedID.at34 = reply[2];
  shared.buffers.QueuedID.at32 = static_cast<std::int16_t>(Word(reply[3], reply[4]));
  shared.buffers.QueuedID.at35 = reply[7];
}

}  // namespace

std::uint32_t FetchQueuedId(std::uint16_t first, std::int16_t second) {
  EntryOfActDev().LastLibErr = 0;
  const auto options = static_cast<std::uint8_t>((first != 0 ? 1 : 0) | (second != 0 ? 2 : 0));
  const bool serial = OnSerialPort();
  // Over a serial link the last record deliberately stays until its bytes are replaced.
  if (!serial) shared.buffers.QueuedID = {};
  for (std::uint8_t page = 0; page <= kIdPages; ++page) {
    ReplyBytes reply;
    if (!Ask(command::kQueuedId, 0, reply, {page, options})) {
      EntryOfActDev().LastLibErr |= TAVLYN_ERR_COMMAND;
      return 0;
    }
    Keep(page, reply);
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

}  // namespace tavlyn
