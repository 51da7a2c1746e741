// What the lines of text files are made of.
#pragma once

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "core/text_file.h"

namespace tavlyn {

// Between a key, its value and what follows them; and between bytes in hexadecimal.
inline constexpr const char* kEntryDelimiters = ", =\t";
inline constexpr const char* kDataDelimiters = ",. \t";

// strtok on a text of one's own, which takes the delimiter behind a token with it: an empty token is the end.
class Tokens {
 public:
  explicit Tokens(std::string_view text) : rest_(text) {}

  std::string_view Next(const char* delimiters) {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(delimiters), rest_.size()));
    const std::string_view token = rest_.substr(0, rest_.find_first_of(delimiters));
    rest_.remove_prefix(std::min(token.size() + 1, rest_.size()));
    return token;
  }

 private:
  std::string_view rest_;
};

// A token as one conversion of scanf takes it. No file has tokens that are longer than the room.
template <typename Number>
bool Scan(std::string_view token, const char* conversion, Number& number) {
  std::array<char, 384> text{};
  token.copy(text.data(), text.size() - 1);
  return std::sscanf(text.data(), conversion, &number) == 1;
}

// A line from its first printable character on; empty when it says nothing to a program.
inline std::string_view Content(std::string_view line) {
  const auto printable = std::ranges::find_if(line, [](char c) { return static_cast<signed char>(c) > ' '; });
  line.remove_prefix(static_cast<std::size_t>(printable - line.begin()));
  const bool forPeople = line.starts_with(kCommentMark) || line.starts_with(kInformationMark);
  return forPeople ? std::string_view() : line;
}

}  // namespace tavlyn
