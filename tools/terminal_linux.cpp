#include <unistd.h>

#include "tools/terminal.h"

namespace tavlyn {

bool InputIsTerminal() { return isatty(STDIN_FILENO) == 1; }
bool OutputIsTerminal() { return isatty(STDOUT_FILENO) == 1; }
bool ErrorsAreOnTerminal() { return isatty(STDERR_FILENO) == 1; }

void ShowAllLanguages() {}

}  // namespace tavlyn
