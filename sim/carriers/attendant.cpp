#include "sim/carriers/attendant.h"

namespace tavlyn::sim {

Attendant::Attendant(std::vector<Served*> served) : served_(std::move(served)), thread_([this] { Loop(); }) {}

Attendant::~Attendant() {
  With([this] { ends_ = true; });
  thread_.join();
}

void Attendant::Loop() {
  for (;;) {
    std::vector<pollfd> polled{{waker_.Polled(), POLLIN, 0}};
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
    net::Poll(polled, PollTimeout(due));
    waker_.Clear();
  }
}

}  // namespace tavlyn::sim
