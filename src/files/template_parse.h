// The grammar of a template file: what its lines say, and what of it a reader takes. It has no state, so that
// tavlynctl can tell from a file what the library would make of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "core/text.h"
#include "files/template_words.h"

namespace tavlyn {

// Within as many bytes the title must come.
inline constexpr std::size_t kTitleWithin = 128;
// A line that is longer is taken in pieces, each a line of its own.
inline constexpr std::size_t kTemplateLineRoom = 128;
// The eleventh configuration of a reader is never loaded.
inline constexpr std::size_t kLoadedConfigs = 10;

// head: what a file begins with.
bool HasTitle(std::string_view head);
// The file is then read from its start again.
bool HasTitle(std::FILE* file);

enum class LineKind : std::uint8_t { kSilent, kEntry, kSepBegin, kSepBytes, kSepEnd };

struct TemplateLine {
  LineKind kind;
  std::string_view text;  // without blanks before it and the line's end after it
};
TemplateLine ParseLine(std::string_view line, bool inSepBlock);

// At most one of option and field is there: what the key stands for.
struct TemplateEntry : Entry {
  const SavedOption* option = nullptr;
  const Field* field = nullptr;
};
TemplateEntry ParseEntry(std::string_view text);

// The bytes of a line up to the first token that is not one.
struct SepBytes {
  std::array<std::uint8_t, kTemplateLineRoom / 2> bytes;
  std::size_t count;
  std::string_view stray;  // that token
};
SepBytes ParseSepBytes(std::string_view text);

// A file may change the separator data but never its format, which the first byte names.
constexpr bool MayLoadSepData(std::uint8_t formatOfFile, std::uint8_t formatOfReader) {
  return formatOfReader != 0 && formatOfFile == formatOfReader;
}
// A load clears iExOutputFormat for readers of other formats, which do not keep it.
constexpr bool KeepsOutputFormat(std::uint8_t formatOfReader) { return formatOfReader == 0x24; }

}  // namespace tavlyn
