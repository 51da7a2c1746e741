// Writing one item of a reader's protected memory.
#pragma once

#include <cstdint>
#include <span>

namespace tavlyn {

inline constexpr std::size_t kItemHeader = 4;

// The four bytes of its header stand in front of its payload and tell the payload's length.
bool IsWholeItem(std::span<const std::uint8_t> item);

// A whole item. True when the reader was told to keep it.
bool WriteItem(std::span<const std::uint8_t> item);

}  // namespace tavlyn
