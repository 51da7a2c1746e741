// Standard input, output and errors that the program was started without.
#pragma once

namespace tavlyn::ctl {

// A device opened under the number of a closed one would get what is printed. On Linux the null device takes
// their numbers before anything else is opened.
bool OutputIsMissing();

}  // namespace tavlyn::ctl
