// The program as a process: the standard files that it was started without, Ctrl-C where a command puts
// things in order before it ends, and keys, which must not be left on a disk or a screen.
#pragma once

namespace tavlyn::ctl {

// A device opened under the number of a closed one would get what is printed. On Linux the null device takes
// their numbers before anything else is opened.
bool OutputIsMissing();

// From now on the first Ctrl-C, SIGTERM, Ctrl-Break or closing of the console is only noted: the library may
// be in the middle of a call. The second one ends the program at once.
void NoteStop();
bool IsStopped();
// The end of a program that was stopped, as its caller would see it without NoteStop().
void EndStopped();

// An end by a fault does not leave the memory on a disk.
void ForbidCoreImage();

// What is typed is not shown as long as the object lasts, nor after a Ctrl-C within it.
class HiddenInput {
 public:
  HiddenInput();
  ~HiddenInput();
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;

  // False where the standard input is no terminal.
  [[nodiscard]] bool IsTyped() const { return typed_; }

 private:
  bool typed_;
};

}  // namespace tavlyn::ctl
