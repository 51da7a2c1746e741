#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "tools/terminal.h"

namespace tavlyn {
namespace {

bool TerminalHasColours() {
  const char* kind = std::getenv("TERM");
  return kind != nullptr && *kind != '\0' && std::string_view(kind) != "dumb";
}

}  // namespace

bool InputIsTerminal() { return isatty(STDIN_FILENO) == 1; }
bool OutputIsTerminal() { return isatty(STDOUT_FILENO) == 1; }
bool ErrorsAreOnTerminal() { return isatty(STDERR_FILENO) == 1; }

bool OutputTakesColours() { return OutputIsTerminal() && TerminalHasColours(); }
bool ErrorsTakeColours() { return ErrorsAreOnTerminal() && TerminalHasColours(); }

void ShowAllLanguages() {}

}  // namespace tavlyn
