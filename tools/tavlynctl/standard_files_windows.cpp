#include <cstdio>

#include "tools/tavlynctl/standard_files.h"

namespace tavlyn::ctl {

// Handles are no small numbers here: none takes the place of another.
bool OutputIsMissing() { return _fileno(stdout) < 0; }

}  // namespace tavlyn::ctl
