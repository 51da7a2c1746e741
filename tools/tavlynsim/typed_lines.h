// Commands typed while the simulation runs.
#pragma once

#include <memory>
#include <string>

#include "sim/carriers/net.h"
#include "sim/source.h"

namespace tavlyn::sim {

class TypedLines {
 public:
  TypedLines(Source& source, bool wanted);
  ~TypedLines();
  TypedLines(const TypedLines&) = delete;
  TypedLines& operator=(const TypedLines&) = delete;

  // For the owner's loop: what to poll, and what to do with the outcome.
  void AddTo(std::vector<pollfd>& polled) const;
  void Serve(const std::vector<pollfd>& polled);

 private:
  struct Input;

  // Runs each complete line that has arrived; replies go to standard error.
  void Take(const std::string& text);
  void RunLine(const std::string& line);

  Source& source_;
  std::unique_ptr<Input> input_;
  std::string unfinished_;
};

}  // namespace tavlyn::sim
