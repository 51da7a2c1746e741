// The firmware words of a device, row by row.
#pragma once

#include <cstddef>

namespace tavlyn {

// Reads that many rows of FWVersion of the active device; a row ends at its first word 0.
void ReadFirmwareWords(std::size_t rows);

}  // namespace tavlyn
