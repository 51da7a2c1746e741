#include "extensions/exchange.h"

#include "core/state.h"
#include "core/trace.h"

namespace tavlyn {

bool Exchange(const Command& command, ReportPair& pair, std::uint8_t x, std::uint8_t y) {
  pair = {CommandReport(command, {x, y}), {}};
  return SendReport(pair.request) && FetchReport(pair.reply);
}

void Fail(const char* tag, std::uint32_t error) {
  EntryOfActDev().LastLibErr |= error;
  LogFailure(tag);
}

}  // namespace tavlyn
