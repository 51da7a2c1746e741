// tsTimeParms of a magnetic-stripe reader: kept by the host in the first configuration slot and never sent.
#pragma once

#include <cstdint>

#include "core/product.h"

namespace tavlyn {

std::uint32_t SorbaneGetTimeParms(std::int16_t* words);
std::uint32_t SorbaneSetTimeParms(const std::int16_t* words);
// The inter-key times proper stand in the magnetic-stripe configuration.
std::uint16_t* SorbaneKeyTime(KeyTime which);

}  // namespace tavlyn
