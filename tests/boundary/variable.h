// A variable of the environment with another value, or without any, while this lives.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "tests/boundary/library.h"

namespace tavlyn::boundary {

class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* before = std::getenv(name); before != nullptr) before_ = before;
    SetVariable(name, value);
  }
  ~Variable() { SetVariable(name_, before_ ? before_->c_str() : nullptr); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::optional<std::string> before_;
};

}  // namespace tavlyn::boundary
