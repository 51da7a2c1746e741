#include "tools/tavlynsim/uhid_show.h"

namespace tavlyn::sim {

// Windows has no equivalent: nothing is ever shown.
struct UhidShow::Shown {};

UhidShow::UhidShow(Source& source) : source_(source) {}

UhidShow::~UhidShow() = default;

bool UhidShow::Start(std::string& problem) {
  problem = "--carrier uhid is there on Linux only; use --carrier hidapi";
  return false;
}

void UhidShow::AddTo(std::vector<pollfd>&) const {}

void UhidShow::Serve() {}

}  // namespace tavlyn::sim
