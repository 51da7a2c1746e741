// Colours on terminals that want them: none with NO_COLOR, on a dumb terminal, in a pipe or a file.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace tavlyn {

enum class Colour { kNone, kHeading, kGood, kBad };

struct Coloured {
  Colour colour;
  std::string text;
};

// The pieces as a line of its own, each filtered as by Printable().
void PrintPieces(std::FILE* stream, const std::vector<Coloured>& pieces);
// "program: text" on standard error.
void TellFailure(const char* program, const std::string& text);

}  // namespace tavlyn
