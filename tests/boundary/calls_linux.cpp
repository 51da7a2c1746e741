#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <ctime>

#include "tests/boundary/calls.h"

namespace {

constexpr std::int64_t kSecond = 1'000'000'000;
constexpr std::int64_t kMillisecond = 1'000'000;

std::atomic<std::int64_t> slept{0};
std::atomic<std::int64_t> reallySlept{0};
std::atomic<bool> skip{false};
std::atomic<int> connects{0};
std::atomic<int> datagrams{0};
constexpr int kCounted = 1000;
std::atomic<int> sleeps[kCounted];  // by their milliseconds

}  // namespace

extern "C" {

int nanosleep(const timespec* wanted, timespec* left) {
  const std::int64_t length = wanted->tv_sec * kSecond + wanted->tv_nsec;
  slept += length;
  if (length / kMillisecond < kCounted) ++sleeps[length / kMillisecond];
  if (skip) return 0;
  const auto start = std::chrono::steady_clock::now();
  const auto result = static_cast<int>(syscall(SYS_nanosleep, wanted, left));
  reallySlept += (std::chrono::steady_clock::now() - start).count();
  return result;
}

int connect(int descriptor, const sockaddr* peer, socklen_t size) {
  ++connects;
  return static_cast<int>(syscall(SYS_connect, descriptor, peer, size));
}

ssize_t sendto(int descriptor, const void* bytes, size_t count, int flags, const sockaddr* peer,
               socklen_t size) {
  ++datagrams;
  return syscall(SYS_sendto, descriptor, bytes, count, flags, peer, size);
}
}

namespace tavlyn::boundary {

void WatchCalls() {}

std::chrono::milliseconds Slept() { return std::chrono::milliseconds(slept / kMillisecond); }

std::chrono::nanoseconds SleptReally() { return std::chrono::nanoseconds(reallySlept); }

int SleepsOf(std::chrono::milliseconds length) { return sleeps[length.count()]; }

void SkipSleeps(bool on) { skip = on; }

int Connects() { return connects; }

int Datagrams() { return datagrams; }

}  // namespace tavlyn::boundary
