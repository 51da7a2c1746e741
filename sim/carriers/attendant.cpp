#include "sim/carriers/attendant.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>

namespace tavlyn::sim {
namespace {

int Milliseconds(std::optional<Served::Clock::time_point> due) {
  if (!due) return -1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - Served::Clock::now());
  return static_cast<int>(std::max<std::int64_t>(left.count(), 0));
}

std::optional<Served::Clock::time_point> Sooner(std::optional<Served::Clock::time_point> one,
                                                std::optional<Served::Clock::time_point> other) {
  if (!one || !other) return one ? one : other;
  return std::min(*one, *other);
}

}  // namespace

Attendant::Attendant(std::vector<Served*> served)
    : served_(std::move(served)),
      wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      thread_([this] { Loop(); }) {}

Attendant::~Attendant() {
  With([this] { ends_ = true; });
  thread_.join();
  close(wake_);
}

void Attendant::Wake() const { eventfd_write(wake_, 1); }

void Attendant::Loop() {
  for (;;) {
    std::vector<pollfd> polled{{wake_, POLLIN, 0}};
    std::optional<Served::Clock::time_point> due;
    {
      const std::lock_guard lock(mutex_);
      if (ends_) return;
      for (Served* one : served_) {
        one->Serve();
        one->AddTo(polled);
        due = Sooner(due, one->NextDue());
      }
    }
    poll(polled.data(), polled.size(), Milliseconds(due));
    eventfd_t count = 0;
    eventfd_read(wake_, &count);
  }
}

}  // namespace tavlyn::sim
