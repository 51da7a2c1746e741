// Template files without a reader: what a configuration file says.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

struct Template {
  // One object for each configuration, by the names of Settings, with what the file mentions only.
  std::vector<Json> configurations;
  // Lines that no reader is told of: "line 14: unknown name iIDBitCn; did you mean iIDBitCnt?".
  std::vector<std::string> ignored;
  // Why it is not whole: "ends in the middle of configuration 0"; empty for a file that is.
  std::string problem;
};

// Throws Failure when the file cannot be read or is no template.
Template ParseTemplate(const std::string& path);
// The same, and Failure for one that is not whole.
Template ReadTemplate(const std::string& path);

// Begins a block that a reader keeps for its BLE radio, in a file of those alone.
inline constexpr const char* kBleBlock = "BEGIN sFldBleData";

// Whether a line holds the text, in whatever case. Throws Failure when the file cannot be read.
bool HasText(const std::string& path, std::string_view text);

enum class Trailer { kHwg, kIni };

// Whether the file has a trailer, good or bad, or what is left of one. Throws Failure when it cannot be read.
bool HasTrailer(const std::string& path, Trailer trailer);

// Throws Failure unless the trailer fits the file. It finds accidents: anybody can compute one.
void CheckTrailer(const std::string& path, Trailer trailer);

}  // namespace tavlyn::ctl
