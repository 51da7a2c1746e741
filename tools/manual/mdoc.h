// Pieces of manual pages in mdoc.
#pragma once

#include <string>

namespace tavlyn::manual {

// A text of its own short lines: each sentence begins a new one, and nothing in it is a request.
std::string Sentences(const std::string& text);
// A word of a line of requests that is none itself.
std::string Argument(const std::string& word);
std::string Item(const std::string& what, const std::string& text);
std::string List(const std::string& items);
// Lines as they are.
std::string Literal(const std::string& lines);

}  // namespace tavlyn::manual
