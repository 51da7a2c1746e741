// Ctrl-C, where a command puts things in order before it ends.
#pragma once

namespace tavlyn::ctl {

// From now on the first Ctrl-C, SIGTERM, Ctrl-Break or closing of the console is only noted: the library may
// be in the middle of a call. The second one ends the program at once.
void NoteStop();
bool IsStopped();
// The end of a program that was stopped, as its caller would see it without NoteStop().
void EndStopped();

}  // namespace tavlyn::ctl
