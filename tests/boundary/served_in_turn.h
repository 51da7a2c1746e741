// Far ends that are served by whoever waits for them, not by a thread of their own.
#pragma once

#include <algorithm>
#include <vector>

#include "sim/carriers/net.h"
#include "sim/carriers/served.h"

namespace tavlyn::boundary {

// Until none of them has anything left to read.
inline void ServeInTurn(const std::vector<sim::Served*>& all) {
  std::vector<pollfd> polled;
  const auto isReady = [](const pollfd& one) { return one.revents != 0; };
  do {
    polled.clear();
    for (sim::Served* one : all) {
      one->Serve();
      one->AddTo(polled);
    }
  } while (!polled.empty() && sim::net::Poll(polled, 0) && std::ranges::any_of(polled, isReady));
}

}  // namespace tavlyn::boundary
