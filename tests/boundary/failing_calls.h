// System calls that fail. The program that links calls_linux.cpp replaces them, so that what seldom happens
// does.
#pragma once

namespace tavlyn::boundary {

// While it lives, a call of that name fails with that error as often as told, and does nothing.
class Failing {
 public:
  Failing(const char* call, int error, int times = 1);
  ~Failing();
  Failing(const Failing&) = delete;
  Failing& operator=(const Failing&) = delete;

  // Failures that have not happened yet.
  static int Left();
};

// For the replacements: whether the call fails this time, with errno set.
bool FailsNow(const char* call);

}  // namespace tavlyn::boundary
