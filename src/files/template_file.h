// A card reader's configuration as a text file: its configurations, a BEGIN and an END around each.
#pragma once

#include <cstdint>

namespace tavlyn {

// Results as of WriteDevCfgToFile and ReadDevCfgFmFile.
std::uint32_t SaveTemplateFile(const char* path);
std::uint32_t LoadTemplateFile(const char* path);

}  // namespace tavlyn
