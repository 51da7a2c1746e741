// The grammar of a template file: what its lines mean, and what a reader accepts of it. It has no state, so
// that tavlynctl can predict what the library would make of a file.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "core/text.h"
#include "files/template_words.h"

namespace tavlyn {

// The title must come within this many bytes.
inline constexpr std::size_t kTitleWithin = 128;
// A longer line is read in pieces, each as a line of its own.
inline constexpr std::size_t kTemplateLineRoom = 128;
// The eleventh configuration of a reader is never loaded.
inline constexpr std::size_t kLoadedConfigs = 10;

// head is the beginning of a file.
bool HasTitle(std::string_view head);
// Rewinds the file.
bool HasTitle(std::FILE* file);

enum class LineKind : std::uint8_t { kSilent, kEntry, kSepBegin, kSepBytes, kSepEnd };

struct TemplateLine {
  LineKind kind;
  std::string_view text;  // without blanks before it and the line's end after it
};
TemplateLine ParseLine(std::string_view line, bool inSepBlock);

// At most one of option and field is set: the one that the key names.
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
