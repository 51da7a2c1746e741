// The words of a command, the numbers in them, and the reason when one fails.
#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace tavlyn::sim {

using Words = std::vector<std::string>;

// A command's name, the words after it, and what it does.
struct CommandText {
  const char* name;
  const char* words;
  const char* deed;
};

// None unless the whole text is a number.
template <typename Number>
std::optional<Number> ParseNumber(const std::string& text, int base = 10) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number, base);
  if (error != std::errc{} || stop != end) return std::nullopt;
  return number;
}

inline bool Fail(std::string& reply, const std::string& reason) {
  reply = reason;
  return false;
}

}  // namespace tavlyn::sim
