// The sensor's parameters as a text file of "key = value" lines.
#pragma once

#include <cstdint>

namespace tavlyn::sonar {

// The mirror as it stands.
std::uint32_t SaveFile(const char* path);
// Into the mirror, through the record sets. 1 for any file that opens.
std::uint32_t LoadFile(const char* path);

}  // namespace tavlyn::sonar
