// Shows the simulated devices to this machine's own kernel, which makes nodes for them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "sim/carriers/net.h"
#include "sim/source.h"

namespace tavlyn::sim {

// How programs reach HID devices: through a stand-in for hidapi, or through nodes of this machine.
enum class Carrier { kHidapi, kUhid, kVhci };

class KernelShow {
 public:
  explicit KernelShow(Source& source);
  ~KernelShow();
  KernelShow(const KernelShow&) = delete;
  KernelShow& operator=(const KernelShow&) = delete;

  // Plugs in what is new, and waits for the kernel to make its nodes. False on an error, described by
  // problem.
  bool Start(Carrier carrier, std::string& problem);

  void AddTo(std::vector<pollfd>& polled) const;
  // Nothing before Start. Answers the kernel, and follows the source's plugging and unplugging.
  void Serve();

 private:
  struct Shown;
  struct ShownLine;

  bool PlugNew();
  bool PlugNewLines();
  [[nodiscard]] bool AllHaveNodes() const;
  [[nodiscard]] bool IsAsked() const;

  Source& source_;
  Carrier carrier_ = Carrier::kHidapi;
  std::vector<std::shared_ptr<Shown>> shown_;
  std::vector<std::shared_ptr<ShownLine>> lines_;
};

}  // namespace tavlyn::sim
