// What people at a terminal see while something lasts. Nothing of it goes anywhere else.
#pragma once

#include <string>

namespace tavlyn::ctl {

// For --quiet: from now on nothing is said of what lasts.
void BeQuiet();
bool IsQuiet();
// Whether people see it.
bool ProgressIsSeen();

// A line on standard error that is written over again and again; gone with the object.
class LiveLine {
 public:
  LiveLine() = default;
  ~LiveLine() { Clear(); }
  LiveLine(const LiveLine&) = delete;
  LiveLine& operator=(const LiveLine&) = delete;

  void Show(const std::string& text);
  void Clear();
  // Leaves it there.
  void End();

 private:
  std::size_t shown_ = 0;  // characters
};

}  // namespace tavlyn::ctl
