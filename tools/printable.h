// Everything that goes to a terminal passes here: device texts, file names and words may come from anybody.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace tavlyn {

// The text as part of one line, with a question mark for whatever moves a cursor, begins a line, turns the
// direction of writing, or is no UTF-8.
std::string Printable(std::string_view text);

// The text as a line of its own, so filtered.
void PrintLine(std::FILE* stream, std::string_view text);

// On the standard error: "program: text".
void Tell(const char* program, std::string_view text);

}  // namespace tavlyn
