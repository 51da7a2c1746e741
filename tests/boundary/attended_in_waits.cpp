// Far ends that answer in the waits of this process, whichever of its threads waits (quick_time.h).
#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

#include "sim/carriers/clock/quick_time.h"
#include "tests/boundary/attended.h"
#include "tests/boundary/served_in_turn.h"

namespace tavlyn::boundary {

struct Attended::Service {
  std::vector<sim::Served*> served;
};

namespace {

std::mutex inServiceMutex;
std::vector<sim::Served*> inService;

void Answer() {
  const std::scoped_lock lock(inServiceMutex);
  ServeInTurn(inService);
}

}  // namespace

Attended::Attended(std::vector<sim::Served*> served) : service_(new Service{std::move(served)}) {
  const std::scoped_lock lock(inServiceMutex);
  inService.insert(inService.end(), service_->served.begin(), service_->served.end());
  AnswerInWaits(Answer);
}

Attended::~Attended() {
  const std::scoped_lock lock(inServiceMutex);
  std::erase_if(inService, [&](sim::Served* one) { return std::ranges::count(service_->served, one) > 0; });
  if (inService.empty()) AnswerInWaits(nullptr);
}

void Attended::With(const std::function<void()>& function) {
  const std::scoped_lock lock(inServiceMutex);
  function();
}

}  // namespace tavlyn::boundary
