#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <ctime>
#include <map>
#include <string_view>

#include "tests/boundary/calls.h"
#include "tests/boundary/failing_calls.h"
#include "tests/boundary/passing.h"

namespace {

using std::chrono::nanoseconds;

constexpr nanoseconds kSecond{1'000'000'000};

nanoseconds slept{};
bool timeIsReal = false;
int connects = 0;
int datagrams = 0;
std::map<nanoseconds, int> sleeps;

struct Failure {
  std::string_view call;
  int error, left;
} failure;

int ReallyPoll(pollfd* polled, nfds_t count, int milliseconds) {
  const timespec limit{milliseconds / 1000, milliseconds % 1000 * 1'000'000L};
  return static_cast<int>(syscall(SYS_ppoll, polled, count, milliseconds < 0 ? nullptr : &limit, nullptr, 0));
}

}  // namespace

extern "C" {

int nanosleep(const timespec* wanted, timespec* left) {
  if (tavlyn::boundary::FailsNow("nanosleep")) {
    *left = *wanted;
    return -1;
  }
  if (timeIsReal) return static_cast<int>(syscall(SYS_nanosleep, wanted, left));
  const nanoseconds length = wanted->tv_sec * kSecond + nanoseconds(wanted->tv_nsec);
  slept += length;
  ++sleeps[length];
  tavlyn::boundary::PassUntil(tavlyn::boundary::Now() + length, [] { return false; });
  return 0;
}

int poll(pollfd* polled, nfds_t count, int milliseconds) {
  if (!tavlyn::boundary::FarEndsAreAtWork() && tavlyn::boundary::FailsNow("poll")) return -1;
  if (timeIsReal || tavlyn::boundary::FarEndsAreAtWork()) return ReallyPoll(polled, count, milliseconds);
  if (const int error = tavlyn::boundary::waitFailure != nullptr ? tavlyn::boundary::waitFailure() : 0) {
    errno = error;
    return -1;
  }
  tavlyn::sim::DueTime end;
  if (milliseconds >= 0) end = tavlyn::boundary::Now() + std::chrono::milliseconds(milliseconds);
  int ready = 0;
  tavlyn::boundary::PassUntil(end, [&] { return (ready = ReallyPoll(polled, count, 0)) != 0; });
  return ready;
}

int clock_gettime(clockid_t clock, timespec* now) {
  if (clock != CLOCK_MONOTONIC || timeIsReal) return static_cast<int>(syscall(SYS_clock_gettime, clock, now));
  const nanoseconds shown = tavlyn::boundary::Now().time_since_epoch();
  *now = {static_cast<time_t>(shown / kSecond), static_cast<long>((shown % kSecond).count())};
  return 0;
}

ssize_t read(int descriptor, void* bytes, size_t count) {
  if (!tavlyn::boundary::FarEndsAreAtWork() && tavlyn::boundary::FailsNow("read")) return -1;
  return syscall(SYS_read, descriptor, bytes, count);
}

ssize_t write(int descriptor, const void* bytes, size_t count) {
  if (!tavlyn::boundary::FarEndsAreAtWork() && tavlyn::boundary::FailsNow("write")) return -1;
  return syscall(SYS_write, descriptor, bytes, count);
}

// Small pieces would otherwise wait for an acknowledgement, which takes time.
int connect(int descriptor, const sockaddr* peer, socklen_t size) {
  ++connects;
  const int on = 1;
  setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  if (tavlyn::boundary::FailsNow("connect")) return -1;
  const int result = static_cast<int>(syscall(SYS_connect, descriptor, peer, size));
  return tavlyn::boundary::FailsNow("connected") ? -1 : result;
}

ssize_t sendto(int descriptor, const void* bytes, size_t count, int flags, const sockaddr* peer,
               socklen_t size) {
  if (!tavlyn::boundary::FarEndsAreAtWork()) ++datagrams;
  return syscall(SYS_sendto, descriptor, bytes, count, flags, peer, size);
}
}

namespace tavlyn::boundary {

Failing::Failing(const char* call, int error, int times) { failure = {call, error, times}; }
Failing::~Failing() { failure = {}; }
int Failing::Left() { return failure.left; }

bool FailsNow(const char* call) {
  if (failure.left == 0 || failure.call != call) return false;
  --failure.left;
  errno = failure.error;
  return true;
}

int (*waitFailure)() = nullptr;

void WatchCalls() {}

std::chrono::milliseconds Slept() { return std::chrono::duration_cast<std::chrono::milliseconds>(slept); }

int SleepsOf(std::chrono::milliseconds length) { return sleeps[length]; }

int Connects() { return connects; }

int Datagrams() { return datagrams; }

void ReallyRest() { ReallyPoll(nullptr, 0, 1); }

RealTime::RealTime() { timeIsReal = true; }
RealTime::~RealTime() { timeIsReal = false; }

}  // namespace tavlyn::boundary
