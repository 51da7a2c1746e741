#include "tests/boundary/passing.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "tests/boundary/attended.h"
#include "tests/boundary/calls.h"
#include "tests/boundary/served_in_turn.h"

namespace tavlyn::boundary {

struct Attended::Service {
  std::vector<sim::Served*> served;
};

namespace {

// Not 0, which carriers take as never.
Moment now{std::chrono::hours(1)};
std::vector<sim::Served*> inService;
bool atWork = false;

void ServeAll() {
  if (farEndsBegin != nullptr) farEndsBegin();
  atWork = true;
  ServeInTurn(inService);
  atWork = false;
  if (farEndsEnd != nullptr) farEndsEnd();
}

sim::DueTime NextDue() {
  sim::DueTime next;
  for (const sim::Served* one : inService) next = sim::Sooner(next, one->NextDue());
  return next;
}

}  // namespace

void (*farEndsBegin)() = nullptr;
void (*farEndsEnd)() = nullptr;

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
