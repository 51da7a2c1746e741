// The text file of a magnetic-stripe reader: its title and its keys, in their order. Nothing here knows the
// mirror.
#pragma once

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

#include "core/text.h"

namespace tavlyn::magstripe {

inline constexpr const char* kTitle = "--- Sorbane Configuration Template File ---";
inline constexpr const char* kMark = "//";
inline constexpr const char* kEnd = "//##END##";
inline constexpr char kColon = ':';  // between a key and its number

enum class Form : std::uint8_t {
  kNumber,
  kFlag,     // 1 for every number but 0
  kSigned,   // a word with its sign
  kKeyTime,  // milliseconds; the accessors of tsTimeParms also reach it
};

struct Setting {
  const char* key;      // each # stands for an index, the outer one first
  std::uint8_t count;   // of outer indices
  std::uint8_t inners;  // and of inner ones
  Form form;
  const char* comment;
};
inline constexpr auto kSettings = std::to_array<Setting>({
#define SETTING(key, count, inners, place, form, comment) {key, count, inners, Form::form, comment},
#include "magstripe/text_file.inc"
});

struct Indices {
  unsigned outer = 0;
  unsigned inner = 0;
};

// Calls visit with the number of a row and the indices of a key, for all keys in the order of the file.
template <typename Visit>
constexpr void ForEachKey(Visit visit) {
  for (std::size_t first = 0, end = 0; first < kSettings.size(); first = end) {
    const unsigned count = kSettings[first].count;
    while (end < kSettings.size() && kSettings[end].count == count) ++end;
    for (Indices at; at.outer < count; ++at.outer) {
      for (std::size_t row = first; row < end; ++row) {
        for (at.inner = 0; at.inner < kSettings[row].inners; ++at.inner) visit(row, at);
      }
    }
  }
}

// Room for the longest key and its terminator.
using KeyText = std::array<char, 32>;

inline KeyText KeyOf(const Setting& setting, Indices at) {
  KeyText text{};
  char* out = text.data();
  const char* const end = out + text.size() - 1;
  unsigned index = at.outer;
  for (const char* from = setting.key; *from != '\0' && out < end; ++from) {
    if (*from != '#') {
      *out++ = *from;
      continue;
    }
    out = std::to_chars(out, text.data() + text.size() - 1, index).ptr;
    index = at.inner;
  }
  return text;
}

// The indices of a key of this row; none for any other text. An index must be written as KeyOf writes it.
inline std::optional<Indices> IndicesIn(const Setting& setting, std::string_view key) {
  std::array<unsigned, 2> found{};
  auto index = found.begin();
  for (const char* from = setting.key; *from != '\0'; ++from) {
    if (*from != '#') {
      if (!key.starts_with(*from)) return std::nullopt;
      key.remove_prefix(1);
      continue;
    }
    const auto [stop, error] = std::from_chars(key.data(), key.data() + key.size(), *index);
    const auto digits = static_cast<std::size_t>(stop - key.data());
    if (error != std::errc() || (key[0] == '0' && digits > 1)) return std::nullopt;
    key.remove_prefix(digits);
    ++index;
  }
  const Indices at{found[0], found[1]};
  return key.empty() && at.outer < setting.count && at.inner < setting.inners ? std::optional(at)
                                                                              : std::nullopt;
}

struct Line {
  std::string_view key;
  std::optional<long> number = {};  // with or without blanks before it
};
inline Line LineOf(std::string_view text) {
  const std::size_t colon = std::min(text.find(kColon), text.size());
  Line line{.key = text.substr(0, colon)};
  long number = 0;
  if (colon < text.size() && Scan(text.substr(colon + 1), "%ld", number)) line.number = number;
  return line;
}

}  // namespace tavlyn::magstripe
