#include "tools/nearest.h"

#include <algorithm>
#include <numeric>

#include "core/text.h"

namespace tavlyn {
namespace {

// How many letters have to be inserted, removed or changed.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (const char letter : a) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (AsciiLower(letter) == AsciiLower(b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::optional<std::size_t> Nearest(std::string_view word, const std::vector<std::string>& names) {
  std::size_t nearest = std::max<std::size_t>(2, word.size() / 3) + 1;
  std::optional<std::size_t> found;
  for (std::size_t at = 0; at < names.size(); ++at) {
    const std::size_t distance = Distance(word, names[at]);
    if (distance >= nearest) continue;
    nearest = distance;
    found = at;
  }
  return found;
}

std::string DidYouMean(std::string_view word, const std::vector<std::string>& names) {
  const auto found = Nearest(word, names);
  return found ? "; did you mean " + names[*found] + "?" : std::string();
}

}  // namespace tavlyn
