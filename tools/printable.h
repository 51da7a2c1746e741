// Everything that goes to a terminal passes here: device texts, file names and arguments may come from
// anybody.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace tavlyn {

// The text as part of one line, with a question mark for whatever moves the cursor, begins a line, changes
// the writing direction, or is not UTF-8.
std::string Printable(std::string_view text);

// The text as a line of its own, filtered likewise.
void PrintLine(std::FILE* stream, std::string_view text);

// On standard error: "program: text".
void Tell(const char* program, std::string_view text);

}  // namespace tavlyn
