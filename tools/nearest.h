// What was probably meant by a name that does not exist.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavlyn {

// Which of the names is nearest to the word, in whatever case; none where all are too far.
std::optional<std::size_t> Nearest(std::string_view word, const std::vector<std::string>& names);

// "; did you mean NAME?", or an empty text.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& names);

}  // namespace tavlyn
