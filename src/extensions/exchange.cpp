#include "extensions/exchange.h"

namespace tavlyn {

bool Exchange(const reader::Command& command, ReportPair& pair, std::uint8_t x, std::uint8_t y) {
  pair = {reader::CommandReport(command, {x, y}), {}};
  return SendReport(pair.request) && FetchReport(pair.reply);
}

}  // namespace tavlyn
