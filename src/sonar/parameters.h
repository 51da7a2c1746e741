// The sensor's parameters and identity from and to the device, and its stored defaults.
#pragma once

#include <cstdint>

namespace tavlyn::sonar {

std::uint32_t ReadParameters();
// What has changed; a commit in any case.
std::uint32_t WriteParameters();

std::uint32_t ResetToFactory();
std::uint32_t ResetToUserDefaults();
std::uint32_t SaveAsUserDefaults();

}  // namespace tavlyn::sonar
