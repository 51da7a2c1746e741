#include "tools/tavlynsim/kernel_show.h"

namespace tavlyn::sim {

// Windows has no equivalent: nothing is ever shown.
struct KernelShow::Shown {};
struct KernelShow::ShownLine {};

KernelShow::KernelShow(Source& source) : source_(source) {}

KernelShow::~KernelShow() = default;

bool KernelShow::Start(Carrier carrier, std::string& problem) {
  const char* word = carrier == Carrier::kVhci ? "vhci" : "uhid";
  problem = std::string("--carrier ") + word + " is there on Linux only; use --carrier hidapi";
  return false;
}

void KernelShow::AddTo(std::vector<pollfd>&) const {}

void KernelShow::Serve() {}

}  // namespace tavlyn::sim
