// What a magnetic-stripe reader reports about itself: whether a swipe is waiting, and its counts.
#include "api.h"
#include "core/openings.h"
#include "magstripe/exchange.h"

namespace tavlyn::magstripe {
namespace {

constexpr std::size_t kCountBytes = 8;

// A number of width bytes, low byte first, from the reply; 0 without a reply.
std::uint32_t Count(const Command& command, std::size_t at, std::size_t width) {
  Payload bytes;
  Ask(command, bytes);
  std::uint32_t number = 0;
  for (std::size_t byte = width; byte-- > 0;) number = number << 8 | bytes[at + byte];
  return number;
}

}  // namespace
}  // namespace tavlyn::magstripe

using namespace tavlyn;
using namespace tavlyn::magstripe;

std::uint32_t sorbaneIsDataAvailable() {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  Reply reply;
  return Exchange(kStatus, reply) ? reply[kStatus.at] & 7U : 0U;
}

std::uint32_t sorbaneClearDataAvailable() {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  return Tell(kClearData) ? 1 : 0;
}

// Deliberately does not check that a device is active.
std::uint32_t sorbaneClearOverrun() { return Tell(kClearOverrun) ? 1 : 0; }

std::uint32_t sorbaneGetSystemUptime() {
  return MagstripeIsActive() ? Count(kUptime, 0, 4) : shared.UnsupportedValue;
}

std::uint32_t sorbaneGetSystemCardsRead() {
  return MagstripeIsActive() ? Count(kUptime, 4, 4) : shared.UnsupportedValue;
}

std::uint32_t sorbaneGetSystemInternalCount(std::uint32_t index) {
  if (!MagstripeIsActive()) return shared.UnsupportedValue;
  return index < kCountBytes / 2 ? Count(kCounts, 2 * index, 2) : 0;
}
