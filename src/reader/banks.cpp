// The stored configuration banks of a plus reader.
#include "api.h"
#include "core/openings.h"
#include "core/pause.h"
#include "reader/exchange.h"
#include "reader/product.h"

namespace tavlyn::reader {
namespace {

enum Bank : std::int16_t { kWorkingSet = 1, kUserDefaults = 2, kPlusDefaults = 3 };

constexpr std::uint32_t kAfterMove = 100;

bool MoveBank(std::uint8_t from, std::uint8_t to) {
  const Xfer moved = Exchange(command::kMoveBank, {from, to}).xfer;
  if (moved == Xfer::kNoReply) EntryOfActDev().LastLibErr |= TAVLYN_ERR_COMMAND;
  return moved == Xfer::kDone;
}

}  // namespace

std::uint32_t ResetUserDflts() { return PlusBlockMove(kUserDefaults, kWorkingSet); }
std::uint32_t SaveUserDflts() { return PlusBlockMove(kWorkingSet, kUserDefaults); }

}  // namespace tavlyn::reader

using namespace tavlyn;
using namespace tavlyn::reader;

std::uint32_t PlusBlockMove(std::int16_t from, std::int16_t to) {
  if (!PlusReaderIsActive()) return 0;
  if (!MoveBank(static_cast<std::uint8_t>(from & 7), static_cast<std::uint8_t>(to & 7))) return 0;
  Pause(kAfterMove);
  return 1;
}

std::uint32_t tavlynPlusDefaults() {
  if (!ReaderIsActive()) return shared.UnsupportedValue;
  // Only the result of the second move counts.
  PlusBlockMove(kPlusDefaults, kUserDefaults);
  return PlusBlockMove(kPlusDefaults, kWorkingSet);
}
