#include "tools/tavlynctl/trouble/error_words.h"

#include <algorithm>

namespace tavlyn::ctl {
namespace {

// How a word is found in a sum of several.
struct Match {
  std::uint32_t mask;
  std::uint32_t value;

  static constexpr Match Of(std::uint32_t word, std::uint32_t mask) { return {mask, word & mask}; }
  [[nodiscard]] bool IsIn(std::uint32_t word) const { return (word & mask) == value; }
  bool operator==(const Match&) const = default;
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

constexpr ErrorWord kErrorWords[] = {
#define ERROR_WORD(name, value, match, words, how, when, remedy) \
  {"TAVLYN_ERR_" #name, value, words, how, when, remedy},
#include "tools/tavlynctl/trouble/error_words.inc"
};

constexpr Match kMatches[] = {
#define ERROR_WORD(name, value, match, words, how, when, remedy) found::match(value),
#include "tools/tavlynctl/trouble/error_words.inc"
};

}  // namespace

std::span<const ErrorWord> AllErrorWords() { return kErrorWords; }

std::string ErrorWords(std::uint32_t word) {
  if (word == 0) return "the library names no reason; the device refused, or its answer was none";
  std::string text;
  for (std::size_t at = 0; at < std::size(kErrorWords); ++at) {
    const std::string words = kErrorWords[at].words;
    // Words of one kind have the same words and come after one another.
    if (!kMatches[at].IsIn(word) || text.ends_with(words)) continue;
    text += (text.empty() ? "" : "; ") + words;
  }
  return text.empty() ? "several failures, whose numbers have joined" : text;
}

std::vector<ErrorWord> PartsOf(std::uint32_t word) {
  // Of those that are found alike, the highest whose bits are all there; what is left was added to it.
  const auto nearest = [word](const Match& match) {
    std::uint32_t value = 0;
    for (std::size_t at = 0; at < std::size(kErrorWords); ++at) {
      const std::uint32_t one = kErrorWords[at].value;
      if (kMatches[at] == match && (one & ~word) == 0) value = std::max(value, one);
    }
    return value;
  };
  std::vector<ErrorWord> parts;
  for (std::size_t at = 0; at < std::size(kErrorWords); ++at) {
    if (!kMatches[at].IsIn(word)) continue;
    const std::uint32_t value = nearest(kMatches[at]);
    if (value == 0 || value == kErrorWords[at].value) parts.push_back(kErrorWords[at]);
  }
  return parts;
}

}  // namespace tavlyn::ctl
