#include "tools/tavlynctl/trouble/error_words.h"

#include <algorithm>
#include <array>

#include "api/error_text.h"

namespace tavlyn::ctl {
namespace {

// How a word is found in a sum of several.
struct Match {
  std::uint32_t mask;
  std::uint32_t found;

  [[nodiscard]] bool IsIn(std::uint32_t word) const { return (word & mask) == found; }
  bool operator==(const Match&) const = default;
};

constexpr ErrorWord kErrorWords[] = {
#define ERROR_WORD(name, value, mask, words, how, when, remedy) \
  {"TAVLYN_ERR_" #name, value, words, how, when, remedy},
#include "tools/tavlynctl/trouble/error_words.inc"
};

constexpr Match kMatches[] = {
#define ERROR_WORD(name, value, mask, words, how, when, remedy) {mask, (value) & (mask)},
#include "tools/tavlynctl/trouble/error_words.inc"
};

}  // namespace

std::span<const ErrorWord> AllErrorWords() { return kErrorWords; }

std::string ErrorWords(std::uint32_t word) {
  std::array<char, TAVLYN_ERROR_TEXT_SIZE> text{};
  return tavlyn_error_text(word, text.data(), text.size());
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
