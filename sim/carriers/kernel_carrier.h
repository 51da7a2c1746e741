// Shows a device to this machine's own kernel, which makes a node for it. It is served only inside Serve():
// the owner's loop polls Fd() of all its devices for input, with a time limit of a few milliseconds, and then
// calls Serve() on each, so that what a model sends by itself goes out too.
#pragma once

#include <string>

namespace tavlyn::sim {

class KernelCarrier {
 public:
  virtual ~KernelCarrier() = default;

  // False on failure, with errno. The node appears a moment later, once the kernel has asked for descriptors.
  virtual bool Plug() = 0;
  virtual void Unplug() = 0;

  // Path of the node that the kernel made for it, of the last one if it made several; empty while one is
  // missing.
  [[nodiscard]] virtual std::string Node() const = 0;

  // -1 while unplugged; poll() ignores negative descriptors.
  [[nodiscard]] virtual int Fd() const = 0;

  // Answers what the kernel has asked so far and passes it what the model has sent, without waiting. A model
  // that is no longer present is unplugged.
  virtual void Serve() = 0;
};

}  // namespace tavlyn::sim
