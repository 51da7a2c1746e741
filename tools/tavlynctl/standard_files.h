// Standard input, output and errors that the program was started without.
#pragma once

namespace tavlyn::ctl {

// A device that takes the number of a closed one would be written to by whoever prints. On Linux the null
// device has filled their places before anything else was opened.
bool OutputIsMissing();

}  // namespace tavlyn::ctl
