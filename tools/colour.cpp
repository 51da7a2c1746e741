#include "tools/colour.h"

#include <cstdlib>

#include "tools/printable.h"
#include "tools/terminal.h"

namespace tavlyn {
namespace {

bool WantsColours(std::FILE* stream) {
  const char* refused = std::getenv("NO_COLOR");
  if (refused != nullptr && *refused != '\0') return false;
  return stream == stderr ? ErrorsTakeColours() : OutputTakesColours();
}

const char* CodeOf(Colour colour) {
  switch (colour) {
    case Colour::kHeading: return "\033[1m";
    case Colour::kGood: return "\033[32m";
    case Colour::kBad: return "\033[31m";
    case Colour::kNone: break;
  }
  return nullptr;
}

}  // namespace

void PrintPieces(std::FILE* stream, const std::vector<Coloured>& pieces) {
  const bool wanted = WantsColours(stream);
  std::string line;
  for (const Coloured& piece : pieces) {
    const char* code = wanted ? CodeOf(piece.colour) : nullptr;
    if (code != nullptr) line += code;
    line += Printable(piece.text);
    if (code != nullptr) line += "\033[0m";
  }
  // In one piece: a console does not accept a character in parts.
  std::fputs((line + "\n").c_str(), stream);
  std::fflush(stream);
}

void TellFailure(const char* program, const std::string& text) {
  PrintPieces(stderr, {{Colour::kBad, std::string(program) + ":"}, {Colour::kNone, " " + text}});
}

}  // namespace tavlyn
