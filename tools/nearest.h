// What a name that does not exist was probably meant to be.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tavlyn {

// The name nearest to the word, whatever the case; none if all are too far.
std::optional<std::size_t> Nearest(std::string_view word, const std::vector<std::string>& names);

// "; did you mean NAME?", or an empty text.
std::string DidYouMean(std::string_view word, const std::vector<std::string>& names);

}  // namespace tavlyn
