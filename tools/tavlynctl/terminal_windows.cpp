#include <io.h>

#include <cstdio>

#include "tools/tavlynctl/terminal.h"

namespace tavlyn::ctl {

bool OutputIsTerminal() { return _isatty(_fileno(stdout)) != 0; }
bool ErrorsAreOnTerminal() { return _isatty(_fileno(stderr)) != 0; }

}  // namespace tavlyn::ctl
