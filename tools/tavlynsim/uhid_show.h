// Shows the simulated devices to this machine through /dev/uhid.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sim/carriers/net.h"
#include "sim/source.h"

namespace tavlyn::sim {

class UhidShow {
 public:
  explicit UhidShow(Source& source);
  ~UhidShow();
  UhidShow(const UhidShow&) = delete;
  UhidShow& operator=(const UhidShow&) = delete;

  // Plugs in what is new, and waits for the kernel to make its nodes. False on an error, described by
  // problem.
  bool Start(std::string& problem);

  void AddTo(std::vector<pollfd>& polled) const;
  // Answers the kernel, and follows the source's plugging and unplugging.
  void Serve();

 private:
  struct Shown;

  bool PlugNew();
  [[nodiscard]] bool AllHaveNodes() const;

  Source& source_;
  std::vector<std::shared_ptr<Shown>> shown_;
};

}  // namespace tavlyn::sim
