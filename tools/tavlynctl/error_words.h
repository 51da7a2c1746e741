// The library's error word, explained in words.
#pragma once

#include <cstdint>
#include <string>

namespace tavlyn::ctl {

// "a report could not be sent; the device did not answer"; never empty.
std::string ErrorWords(std::uint32_t word);

}  // namespace tavlyn::ctl
