// tsTimeParms of a magnetic-stripe reader: kept by the host in the first configuration slot and never sent.
#pragma once

#include <cstdint>

namespace tavlyn {

std::uint32_t SorbaneGetTimeParms(std::int16_t* words);
std::uint32_t SorbaneSetTimeParms(const std::int16_t* words);

}  // namespace tavlyn
