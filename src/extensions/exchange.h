// One exchange of a reader's extension: over reports, whatever the link.
#pragma once

#include <cstdint>

#include "hid/report_channel.h"
#include "reader/exchange.h"

namespace tavlyn {

// The two halves of an exchange; reply bytes of a command are b1 to b8.
struct ReportPair {
  Report request{};
  Report reply{};
};

// Sends a command and fetches its reply into the pair.
inline bool ExchangePair(const reader::Command& command, ReportPair& pair, std::uint8_t x = 0,
                         std::uint8_t y = 0) {
  pair = {reader::CommandReport(command, {x, y}), {}};
  return SendReport(pair.request) && FetchReport(pair.reply);
}

}  // namespace tavlyn
