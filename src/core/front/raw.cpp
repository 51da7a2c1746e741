// Raw commands, which the family of the active device sends.
#include <cstdio>

#include "api.h"
#include "core/openings.h"
#include "core/state.h"

using namespace tavlyn;

std::uint32_t SetRawPayload_index(std::int16_t index, std::uint8_t value) {
  return Dispatch(&Product::setRawPayload, index, value);
}

std::uint8_t GetRawPayload_index(std::uint16_t index) {
  return static_cast<std::uint8_t>(Dispatch(&Product::rawReplyByte, index));
}

const char* SetRawPayload(std::uint8_t c0, std::uint8_t c1, std::uint8_t c2, std::uint8_t c3, std::uint8_t c4,
                          std::uint8_t c5, std::uint8_t c6, std::uint8_t c7) {
  auto& text = shared.buffers.rawText;
  std::int16_t position = 0;
  for (const std::uint8_t value : {std::uint8_t{0}, c0, c1, c2, c3, c4, c5, c6, c7}) {
    SetRawPayload_index(position++, value);
  }
  const auto byte = [](std::uint16_t at) { return unsigned{GetRawPayload_index(at)}; };
  std::snprintf(text.data(), text.size(), "%02X.%02X.%02X.%02X.%02X.%02X.%02X.%02X", byte(1), byte(2),
                byte(3), byte(4), byte(5), byte(6), byte(7), byte(8));
  return text.data();
}
