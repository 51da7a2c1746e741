#include "tests/boundary/passing.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tests/boundary/attended.h"
#include "tests/boundary/calls.h"

namespace tavlyn::boundary {

struct Attended::Service {
  std::vector<sim::Served*> served;
};

namespace {

// Not 0, which carriers take as never.
Moment now{std::chrono::hours(1)};
std::vector<sim::Served*> inService;
bool atWork = false;

// Until none of them has anything left to read.
void ServeAll() {
  atWork = true;
  std::vector<pollfd> polled;
  const auto isReady = [](const pollfd& one) { return one.revents != 0; };
  do {
    polled.clear();
    for (sim::Served* one : inService) {
      one->Serve();
      one->AddTo(polled);
    }
  } while (!polled.empty() && sim::net::Poll(polled, 0) && std::ranges::any_of(polled, isReady));
  atWork = false;
}

sim::DueTime NextDue() {
  sim::DueTime next;
  for (const sim::Served* one : inService) next = sim::Sooner(next, one->NextDue());
  return next;
}

}  // namespace

Moment Now() { return now; }

bool FarEndsAreAtWork() { return atWork; }

bool PassUntil(sim::DueTime end, const std::function<bool()>& ready) {
  for (;;) {
    ServeAll();
    if (ready()) return true;
    if (end && now >= *end) return false;
    const sim::DueTime next = sim::Sooner(end, NextDue());
    if (next) {
      now = std::max(now, *next);
    } else {
      ReallyRest();
    }
  }
}

Attended::Attended(std::vector<sim::Served*> served) : service_(new Service{std::move(served)}) {
  inService.insert(inService.end(), service_->served.begin(), service_->served.end());
}

Attended::~Attended() {
  std::erase_if(inService, [&](sim::Served* one) { return std::ranges::count(service_->served, one) > 0; });
}

void Attended::With(const std::function<void()>& function) {
  ServeAll();
  function();
  ServeAll();
}

}  // namespace tavlyn::boundary
