// A program that runs alongside the test.
#pragma once

#include <winsock2.h>

// winsock2.h has to come first.
#include <windows.h>

#include <memory>
#include <string>

#include "tests/boundary/program.h"

namespace tavlyn::boundary {

inline const std::string kSim = TAVLYNSIM;
inline const std::string kCtl = TAVLYNCTL;

class Taken;

class Begun {
 public:
  // The line is one program with its arguments: there is no shell.
  explicit Begun(const std::string& line);
  ~Begun();
  Begun(const Begun&) = delete;
  Begun& operator=(const Begun&) = delete;

  [[nodiscard]] DWORD Pid() const { return GetProcessId(process_); }
  // Returns once it has written the text to standard error; false if it ended before.
  [[nodiscard]] bool Tells(const std::string& text) const;
  // False: it goes on.
  [[nodiscard]] bool EndsWithin(DWORD ms) const;
  Ended End() const;

 private:
  std::unique_ptr<Taken> out_;
  std::unique_ptr<Taken> err_;
  HANDLE process_ = nullptr;
};

}  // namespace tavlyn::boundary
