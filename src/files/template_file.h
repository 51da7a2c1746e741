// A card reader's configurations as a text file.
#pragma once

#include <cstdint>

namespace tavlyn {

// The results are those of WriteDevCfgToFile and ReadDevCfgFmFile.
std::uint32_t SaveTemplateFile(const char* path);
std::uint32_t LoadTemplateFile(const char* path);

}  // namespace tavlyn
