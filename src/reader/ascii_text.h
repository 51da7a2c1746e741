// Lines of the text dialect: taking a value out of a reply, sending an assignment.
#pragma once

#include <cstdint>
#include <string_view>

namespace tavlyn::reader {

// The prompt that ends every answer.
inline constexpr std::string_view kPrompt = "Orvantis>";

// A key's value in the answer that lists them all; 0 when it is absent or its line does not end.
std::int32_t AsciiQuery(std::string_view text, std::string_view key);

// One assignment on the active device's port; nothing when that is not open.
void AsciiSet(const char* format, std::int32_t value);

}  // namespace tavlyn::reader
