#include "tools/word_checks.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "tools/nearest.h"

namespace tavlyn {
namespace {

constexpr int kNoEnd = std::numeric_limits<int>::max();

template <typename Number>
bool IsNumber(const std::string& word, Number least, Number most, Number& number) {
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number);
  return error == std::errc() && stop == end && number >= least && number <= most;
}

std::string BoundsText(int least, int most) {
  const std::string from = std::to_string(least);
  return most == kNoEnd ? ", " + from + " or more" : " from " + from + " to " + std::to_string(most);
}

}  // namespace

CLI::Validator WholeNumber(int least) { return WholeNumber(least, kNoEnd); }

CLI::Validator WholeNumber(int least, int most) {
  return {[least, most](const std::string& word) {
            int number = 0;
            // The parser takes a leading zero for the sign of an octal number.
            if (IsNumber(word, least, most, number) && word == std::to_string(number)) return std::string();
            return word + " is not a whole number" + BoundsText(least, most);
          },
          ""};
}

CLI::Validator Seconds(int most) {
  return {[most](const std::string& word) {
            double number = 0;
            if (IsNumber<double>(word, 0, most, number)) return std::string();
            return word + " is not a number of seconds" + BoundsText(0, most);
          },
          ""};
}

CLI::Validator OneOf(const std::vector<std::string>& words) {
  return {[words](const std::string& word) {
            if (std::ranges::find(words, word) != words.end()) return std::string();
            std::string all;
            for (const std::string& one : words) all += (all.empty() ? "" : ", ") + one;
            return word + " is not one of " + all + DidYouMean(word, words);
          },
          ""};
}

}  // namespace tavlyn
