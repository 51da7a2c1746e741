#pragma once

namespace tavlyn::ctl {

// Whether people see the standard output as it comes.
bool OutputIsTerminal();
// The same of the standard error.
bool ErrorsAreOnTerminal();

}  // namespace tavlyn::ctl
