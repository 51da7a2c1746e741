// Parses any settings file of tavlynd: a mistake is in a line of it, and the settings without one are those
// of a file that says the same again.
#include <algorithm>
#include <cstdint>
#include <string>

#include "fuzz/require.h"
#include "tools/tavlynd/settings_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavlyn;
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto lines = static_cast<unsigned>(std::ranges::count(text, '\n') + 1);
  const agent::ReadSettings read = agent::ParseSettings(text);
  for (const agent::Mistake& one : read.mistakes) {
    fuzz::Require(one.line <= lines && !one.text.empty());
    fuzz::Require(!agent::MistakeLine("f", one).empty());
  }
  if (read.mistakes.empty()) fuzz::Require(agent::ParseSettings(text).settings == read.settings);
  return 0;
}
