// The stored banks of a plus reader.
#pragma once

#include <cstdint>

namespace tavlyn {

std::uint32_t RestoreUserDefaults();
std::uint32_t SaveUserDefaults();

}  // namespace tavlyn
