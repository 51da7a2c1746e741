// A call that may take long, beside the owner's loop.
#pragma once

#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>

#include "tools/descriptor_linux.h"

namespace tavlyn::agent {

class Beside {
 public:
  // Why it failed; empty if it did not. It may outlive this object: it owns what it uses.
  using Call = std::function<std::string()>;

  // Throws std::system_error if it cannot begin.
  explicit Beside(Call call);

  // Something to read there: it has ended.
  [[nodiscard]] int Number() const { return ended_->Number(); }
  // What it returned, once.
  [[nodiscard]] std::optional<std::string> Outcome();

 private:
  std::shared_ptr<Descriptor> ended_;
  std::future<std::string> outcome_;
};

}  // namespace tavlyn::agent
