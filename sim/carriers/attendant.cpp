#include "sim/carriers/attendant.h"

#include <sys/eventfd.h>
#include <unistd.h>

namespace tavlyn::sim {
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
    DueTime due;
    {
      const std::lock_guard lock(mutex_);
      if (ends_) return;
      for (Served* one : served_) {
        one->Serve();
        one->AddTo(polled);
        due = Sooner(due, one->NextDue());
      }
    }
    poll(polled.data(), polled.size(), PollTimeout(due));
    eventfd_t count = 0;
    eventfd_read(wake_, &count);
  }
}

}  // namespace tavlyn::sim
