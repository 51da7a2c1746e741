// Reads configuration files without a reader.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

struct Template {
  // One object per configuration, keyed as Settings are, with only what the file mentions.
  std::vector<Json> configurations;
  // Lines that no reader gets: "line 14: unknown name iIDBitCn; did you mean iIDBitCnt?".
  std::vector<std::string> ignored;
  // Why it is incomplete: "ends in the middle of configuration 0"; empty if it is complete.
  std::string problem;
};

// Throws Failure if the file cannot be read or is not a template.
Template ParseTemplate(const std::string& path);
// The same, and Failure for an incomplete file.
Template ReadTemplate(const std::string& path);

// The beginning of a block that a reader stores for its BLE radio, in a file of such blocks.
inline constexpr const char* kBleBlock = "BEGIN sFldBleData";

// Whether a line contains the text, ignoring case. Throws Failure if the file cannot be read.
bool HasText(const std::string& path, std::string_view text);

enum class Trailer { kHwg, kIni };

// Whether the file has a trailer, good or bad, or part of one. Throws Failure if it cannot be read.
bool HasTrailer(const std::string& path, Trailer trailer);

// Throws Failure unless the trailer matches the file. It detects accidents only: anybody can compute one.
void CheckTrailer(const std::string& path, Trailer trailer);

}  // namespace tavlyn::ctl
