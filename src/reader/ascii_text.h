// Lines of the text dialect: reading a value from a reply, sending an assignment.
#pragma once

#include <cstdint>
#include <string_view>

namespace tavlyn::reader {

// The prompt that ends every answer.
inline constexpr std::string_view kPrompt = "Orvantis>";

// A key's value in the answer that lists them all; 0 when the key is absent or its line is not terminated.
std::int32_t AsciiQuery(std::string_view text, std::string_view key);

// Sends one assignment to the active device; does nothing unless its port is open.
void AsciiSet(const char* format, std::int32_t value);

}  // namespace tavlyn::reader
