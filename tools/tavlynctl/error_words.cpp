#include "tools/tavlynctl/error_words.h"

namespace tavlyn::ctl {
namespace {

// How a word is found in a sum of several.
struct Match {
  std::uint32_t mask;
  std::uint32_t value;

  static constexpr Match Of(std::uint32_t word, std::uint32_t mask) { return {mask, word & mask}; }
};

namespace found {

constexpr Match Alone(std::uint32_t word) { return Match::Of(word, 0xFFFFFFFF); }
constexpr Match Bits(std::uint32_t word) { return Match::Of(word, word); }
// The four highest bits are one number.
constexpr Match Number(std::uint32_t word) { return Match::Of(word, 0xF0000000); }
// Small numbers are added to what the last report left.
constexpr Match Small(std::uint32_t word) { return Match::Of(word, 0xFFF); }
constexpr Match Joined(std::uint32_t word) { return Match::Of(word, 0xFFC); }
// Getters and setters replace the whole word.
constexpr Match Record(std::uint32_t word) { return Match::Of(word, 0x3F0FFF); }
// Shared by all records, whose numbers are in the lower bits.
constexpr Match Range(std::uint32_t word) { return Match::Of(word, 0xFFFF00); }
// An exchange of secure data has a number that contains this bit.
constexpr Match Command(std::uint32_t word) { return Match::Of(word, 0x80000000 | word); }
constexpr Match Analyzer(std::uint32_t /*word*/) { return {0x4000000, 0x4000000}; }

}  // namespace found

struct ErrorRow {
  Match match;
  const char* words;
};

constexpr ErrorRow kErrorRows[] = {
    {found::Alone(0), "the library names no reason; the device refused, or its answer was none"},
#define ERROR_WORD(name, value, match, words, how, when, remedy) {found::match(value), words},
#include "tools/tavlynctl/error_words.inc"
};

}  // namespace

std::string ErrorWords(std::uint32_t word) {
  std::string text;
  for (const ErrorRow& row : kErrorRows) {
    const std::string words = row.words;
    // Words of one kind have the same words and come after one another.
    if ((word & row.match.mask) != row.match.value || text.ends_with(words)) continue;
    text += (text.empty() ? "" : "; ") + words;
  }
  return text.empty() ? "several failures, whose numbers have joined" : text;
}

}  // namespace tavlyn::ctl
