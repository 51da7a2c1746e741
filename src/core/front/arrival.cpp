// Devices that come and go while a program runs.
#include "hid/arrival.h"

#include <algorithm>
#include <cstring>

#include "api.h"
#include "core/openings.h"
#include "core/state.h"
#include "core/text.h"

using namespace tavlyn;

std::uint32_t ChkAddArrival(const char* path) { return Dispatch(&Product::checkArrival, path); }

std::uint32_t ChkDelRemoval(const char* path) {
  if (path == nullptr || std::strlen(path) >= sizeof DevTable[0].DevName || shared.DevCnt <= 0) return 0;
  const auto live = LiveEntries();
  const auto matching =
      std::ranges::find_if(live, [&](const tsDevEntry& entry) { return SameText(entry.DevName, path); });
  return matching != live.end() ? AddOrRemoveEntry(&*matching, true) : 0;
}

std::uint32_t chkAddArrival_char(std::int16_t index, std::uint8_t character) {
  return CollectPath(shared.buffers.arrivalPath, index, character, ChkAddArrival);
}

std::uint32_t chkDelRemoval_char(std::int16_t index, std::uint8_t character) {
  return CollectPath(shared.buffers.removalPath, index, character, ChkDelRemoval);
}
