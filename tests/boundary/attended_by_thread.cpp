#include <utility>

#include "sim/carriers/attendant.h"
#include "tests/boundary/attended.h"

namespace tavlyn::boundary {

struct Attended::Service {
  sim::Attendant attendant;
};

Attended::Attended(std::vector<sim::Served*> served)
    : service_(new Service{sim::Attendant(std::move(served))}) {}
Attended::~Attended() = default;
void Attended::With(const std::function<void()>& function) { service_->attendant.With(function); }

}  // namespace tavlyn::boundary
