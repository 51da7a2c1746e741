#include <unistd.h>

#include "tools/tavlynctl/terminal.h"

namespace tavlyn::ctl {

bool OutputIsTerminal() { return isatty(STDOUT_FILENO) == 1; }
bool ErrorsAreOnTerminal() { return isatty(STDERR_FILENO) == 1; }

}  // namespace tavlyn::ctl
