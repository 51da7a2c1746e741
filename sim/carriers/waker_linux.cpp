#include <sys/eventfd.h>
#include <unistd.h>

#include "sim/carriers/waker.h"

namespace tavlyn::sim {

Waker::Waker() : polled_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

Waker::~Waker() { close(polled_); }

void Waker::Wake() const { eventfd_write(polled_, 1); }

void Waker::Clear() const {
  eventfd_t count = 0;
  eventfd_read(polled_, &count);
}

}  // namespace tavlyn::sim
