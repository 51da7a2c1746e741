// What keeps keys from places where others could find them.
#pragma once

#include <string>
#include <string_view>

namespace tavlyn::ctl {

// Whether a command, by its words, has to do with keys: an end by a fault must not leave its memory on a
// disk.
bool HandlesKeys(std::string_view command);
// Whether the words after it may be keys, which no message repeats.
bool MayHoldKeys(std::string_view command);

// A line of the standard input, which a terminal does not show while it is typed.
std::string HiddenLine(const char* what);

// Of each system.
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
