// The record gets and sets on the host's mirror.
#pragma once

#include <cstdint>

#include "core/fields.h"

namespace tavlyn {

std::uint32_t GetRecord(Record record, std::int16_t* words);
std::uint32_t SetRecord(Record record, const std::int16_t* words);

}  // namespace tavlyn
