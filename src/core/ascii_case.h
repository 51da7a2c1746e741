// Texts compared without regard to ASCII case, whatever the program's locale.
#pragma once

#include <algorithm>
#include <string_view>

namespace tavlyn {

constexpr char AsciiLower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

constexpr bool SameText(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, AsciiLower, AsciiLower);
}

}  // namespace tavlyn
