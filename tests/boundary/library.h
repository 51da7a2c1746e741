// The built library, loaded into this process as an application would, and the stand-in for the system's HID
// library below it. Tests use only the exports and the stand-in's commands.
#pragma once

#include <string>

#include "api.h"

namespace tavlyn::boundary {

class Library {
 public:
  // Loads the stand-in and then the library; throws std::runtime_error when either is missing, or when what
  // was loaded under the stand-in's name is the system's own.
  Library();
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  // Throws std::runtime_error when there is no such export.
  template <typename Function>
  Function* Export(const char* name) const {
    return reinterpret_cast<Function*>(Symbol(name));
  }

  // Runs a command of sim/carriers/standin_control.h and returns its reply; throws if it fails.
  std::string Standin(const std::string& command) const;

 private:
  [[nodiscard]] void* Symbol(const char* name) const;

  void* standin_;
  void* library_ = nullptr;
};

// A null value removes the variable.
void SetVariable(const char* name, const char* value);

// Where a library that is loaded from now on puts its trace.
std::string ChooseTraceFile();

}  // namespace tavlyn::boundary

// Calls an export with the signature that api.h gives it: CALL(library, GetDevCnt)().
#define CALL(library, name) (library).Export<decltype(::name)>(#name)
