// The active device's configuration as a file.
#pragma once

#include <string>
#include <vector>

#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

class NewFile;

// Writes every configuration into the file, which is yet to be kept. Throws Failure if any is missing in it.
void SaveConfiguration(const NewFile& file, bool secure);
// The same without a trailer, and keeps it.
void SaveConfigurationAt(const std::string& path);
// Of a reader, one object per configuration as Settings returns it; of another product its settings.
std::vector<Json> PresentSettings();

}  // namespace tavlyn::ctl
