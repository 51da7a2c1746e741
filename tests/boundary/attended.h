// Serves far ends until it is destroyed. How they are served is the program's choice: by a thread
// (attended_by_thread.cpp) where another process talks to them, or in this process's own waits (passing.cpp).
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "sim/carriers/served.h"

namespace tavlyn::boundary {

class Attended {
 public:
  // The carriers must outlive it. Meanwhile they and their models may only be touched inside With.
  explicit Attended(std::vector<sim::Served*> served);
  ~Attended();
  Attended(const Attended&) = delete;
  Attended& operator=(const Attended&) = delete;

  // Runs a function while nothing is being served.
  void With(const std::function<void()>& function);

 private:
  struct Service;
  std::unique_ptr<Service> service_;
};

}  // namespace tavlyn::boundary
