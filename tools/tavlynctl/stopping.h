// Ctrl-C, where a command puts things in order before it ends.
#pragma once

namespace tavlyn::ctl {

// From now on the first Ctrl-C, or SIGTERM, is only noted: the library may be in the middle of a call. The
// second one ends the program at once.
void NoteStop();
bool IsStopped();

}  // namespace tavlyn::ctl
