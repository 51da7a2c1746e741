// The program as a process: the standard files that it was started without, Ctrl-C where a command puts
// things in order before it ends, keys, which must not be left on a disk or a screen, and the user's editor.
#pragma once

#include <string>
#include <vector>

namespace tavlyn::ctl {

// A device opened under the number of a closed standard stream would get what is printed. On Linux the null
// device takes these numbers before anything else is opened.
bool OutputIsMissing();

// From now on a write beyond a limit of the process fails like one to a full disk and does not end the
// program.
void LetWritesFail();

// From now on a write to a pipe that nobody reads fails too.
void LetPipesBreak();

// From now on the first Ctrl-C, SIGTERM, Ctrl-Break or closing of the console is only noted: the library may
// be in the middle of a call. The second one ends the program at once.
void NoteStop();
bool IsStopped();
// Ends a stopped program the way its caller would see it without NoteStop().
void EndStopped();

// From now on a crash does not write the memory to disk.
void ForbidCoreImage();

// An environment variable of this process, set while the object lasts if it was not set before. Null sets
// none.
class SetVariable {
 public:
  explicit SetVariable(const char* name);
  ~SetVariable();
  SetVariable(const SetVariable&) = delete;
  SetVariable& operator=(const SetVariable&) = delete;

 private:
  const char* name_;  // null if it is to stay
};

// Typing is not echoed while the object lasts; echo comes back even after a Ctrl-C.
class HiddenInput {
 public:
  HiddenInput();
  ~HiddenInput();
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;

  // False if standard input is not a terminal.
  [[nodiscard]] bool IsTyped() const { return typed_; }

 private:
  bool typed_;
};

// Runs an editor, words for a shell, on a file until it ends; a Ctrl-C is the editor's alone. False if it
// failed.
bool RunEditor(const std::string& editor, const std::string& path);
const char* UsualEditor();

// Runs another of these tools, the one beside this program or else the one that a shell would find, in the
// place of this process. Returns only when it cannot be run, with the reason.
std::string BecomeOneOfOurs(std::vector<std::string> words);

}  // namespace tavlyn::ctl
