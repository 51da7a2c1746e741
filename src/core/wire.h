// What goes over the wire, as lines of the trace: only while the trace is on and the environment variable
// TAVLYNAPI_WIRE was set too when it was turned on. Bytes that may be keys are covered.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace tavlyn {

// How many bytes from the first on are shown of what is sent or received; the others are covered.
inline constexpr std::size_t kAllShown = std::numeric_limits<std::size_t>::max();
inline constexpr std::size_t kNoneShown = 0;
// A report's ID and its opcode.
inline constexpr std::size_t kOpcodeShown = 2;

enum class Direction : char { kSent = '>', kReceived = '<' };

// "wire reader > 00 8A 00", of a product as ProductKind has it. Nothing at all is shown as "nothing".
void LogWire(std::uint32_t product, Direction direction, std::span<const std::uint8_t> bytes,
             std::size_t shown = kAllShown);

}  // namespace tavlyn
