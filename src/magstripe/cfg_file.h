// A magnetic-stripe reader's configuration as a text file. Both directions know the mirror alone.
#pragma once

#include <cstdint>

namespace tavlyn {

std::uint32_t SaveSorbaneFile(const char* path);
std::uint32_t LoadSorbaneFile(const char* path);

}  // namespace tavlyn
