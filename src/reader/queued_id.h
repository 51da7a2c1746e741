// IDs that the reader queued while nobody polled.
#pragma once

#include <cstdint>

namespace tavlyn {

std::uint32_t FetchQueuedId(std::uint16_t first, std::int16_t second);
std::uint32_t QueuedIdPart(std::int16_t index);

}  // namespace tavlyn
