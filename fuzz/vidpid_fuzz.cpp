// Parses any lines of the identity file. Lines are split at line feeds, and each is in memory of its exact
// size.
#include <algorithm>
#include <cstring>
#include <memory>

#include "fuzz/require.h"
#include "hid/vidpid_table.h"

namespace tavlyn::fuzz {
namespace {

void ParseExact(std::string_view line) {
  const auto copy = std::make_unique<char[]>(line.size() + 1);
  line.copy(copy.get(), line.size());
  const std::int32_t before = shared.vidPid.VidPidCnt;
  ParseVidPidLine(copy.get());
  Require(shared.vidPid.VidPidCnt == before || shared.vidPid.VidPidCnt == before + 1);
  Require(shared.vidPid.VidPidCnt <= kVidPidRows);
  if (shared.vidPid.VidPidCnt == before) return;
  const tsVidPidRow& row = shared.vidPid.VidPidTable[static_cast<std::size_t>(before)];
  Require(row.VID != 0 && row.PID != 0 && row.VendorName[0] != '\0');
  Require(std::memchr(row.VendorName, '\0', kVendorNameLength + 1) != nullptr);
}

void Parse(std::string_view text) {
  shared.vidPid = {};
  while (!text.empty()) {
    const std::size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
    ParseExact(text.substr(0, length));
    text.remove_prefix(length);
  }
  for (std::int32_t row = 0; row < shared.vidPid.VidPidCnt; ++row) {
    const tsVidPidRow& found = shared.vidPid.VidPidTable[static_cast<std::size_t>(row)];
    const std::int32_t first = FindVidPidRow({found.VID, found.PID}, 0);
    Require(first >= 0 && first <= row);
  }
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Parse(tavlyn::fuzz::TextOf(data, size));
  return 0;
}
