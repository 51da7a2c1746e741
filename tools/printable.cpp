#include "tools/printable.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace tavlyn {
namespace {

struct Span {
  std::uint32_t first;
  std::uint32_t last;
};

constexpr Span kUnprintable[] = {
    {0x00, 0x1F},                        // C0
    {0x7F, 0x9F},                        // delete, C1
    {0x61C, 0x61C},                      // direction marks, here and below
    {0x200E, 0x200F}, {0x2028, 0x202E},  // line and paragraph separators; direction embeddings and overrides
    {0x2066, 0x2069},                    // isolates
    {0xD800, 0xDFFF},                    // surrogates, which UTF-8 does not contain
};

// Sequences by their first byte: its mark, its bits of the character, and the lowest character that needs
// this many bytes.
struct Form {
  std::uint8_t mark;
  std::uint8_t held;
  std::uint32_t least;
};
constexpr Form kForms[] = {{0x00, 0x7F, 0}, {0xC0, 0x1F, 0x80}, {0xE0, 0x0F, 0x800}, {0xF0, 0x07, 0x10000}};
constexpr std::uint32_t kLastCharacter = 0x10FFFF;

bool IsPrintable(std::uint32_t character) {
  return character <= kLastCharacter && std::ranges::none_of(kUnprintable, [&](const Span& span) {
           return character >= span.first && character <= span.last;
         });
}

struct Decoded {
  std::size_t bytes;
  bool printable;
};

// The first character of a non-empty text; a single byte if there is no valid one.
Decoded Front(std::string_view text) {
  constexpr unsigned kBitsBehind = 6;
  const auto byteAt = [&](std::size_t at) { return static_cast<std::uint8_t>(text[at]); };
  const auto* form = std::ranges::find_if(
      kForms, [&](const Form& one) { return (byteAt(0) & ~unsigned{one.held}) == one.mark; });
  const auto bytes = static_cast<std::size_t>(form - kForms) + 1;
  if (form == std::end(kForms) || text.size() < bytes) return {1, false};
  std::uint32_t character = byteAt(0) & unsigned{form->held};
  for (std::size_t at = 1; at < bytes; ++at) {
    if ((byteAt(at) & 0xC0U) != 0x80) return {1, false};
    character = character << kBitsBehind | (byteAt(at) & 0x3FU);
  }
  if (character < form->least) return {1, false};
  return {bytes, IsPrintable(character)};
}

}  // namespace

std::string Printable(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const Decoded front = Front(text);
    shown += front.printable ? text.substr(0, front.bytes) : "?";
    text.remove_prefix(front.bytes);
  }
  return shown;
}

void PrintLine(std::FILE* stream, std::string_view text) {
  // In one piece: a console does not accept a character in parts.
  std::fputs((Printable(text) + "\n").c_str(), stream);
  std::fflush(stream);
}

void Tell(const char* program, std::string_view text) {
  PrintLine(stderr, std::string(program) + ": " + std::string(text));
}

}  // namespace tavlyn
