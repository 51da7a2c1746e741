// Numbers in the words of commands.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <system_error>

namespace tavlyn::sim {

// None unless the whole text is such a number.
template <typename Number>
std::optional<Number> ParseNumber(const std::string& text, int base = 10) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return number;
}

}  // namespace tavlyn::sim
