// Template files without a reader: what a configuration file says.
#pragma once

#include <string>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// One object for each configuration, by the names of Settings, with what the file mentions only. Throws
// Failure when the file cannot be read or is no template.
std::vector<Json> ReadTemplate(const std::string& path);

enum class Trailer { kHwg, kIni };

// Whether the file has a trailer, good or bad, or what is left of one. Throws Failure when it cannot be read.
bool HasTrailer(const std::string& path, Trailer trailer);

// Throws Failure unless the trailer proves that the file is as it was written.
void CheckTrailer(const std::string& path, Trailer trailer);

}  // namespace tavlyn::ctl
