#pragma once

namespace tavlyn::ctl {

// Whether people see the standard output as it comes.
bool OutputIsTerminal();

}  // namespace tavlyn::ctl
