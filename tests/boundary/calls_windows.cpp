#include <array>
#include <atomic>
#include <cstdint>
#include <stdexcept>

#include "tests/boundary/calls.h"
#include "tests/boundary/imports_windows.h"

namespace tavlyn::boundary {
namespace {

using Clock = std::chrono::steady_clock;

constexpr DWORD kCounted = 1000;
std::array<std::atomic<int>, kCounted> sleeps;  // by their milliseconds
std::atomic<std::int64_t> slept{0};             // milliseconds
std::atomic<std::int64_t> reallySlept{0};       // nanoseconds
std::atomic<bool> skip{false};
std::atomic<int> connects{0};
std::atomic<int> datagrams{0};

void WINAPI CountedSleep(DWORD milliseconds) {
  slept += milliseconds;
  if (milliseconds < kCounted) ++sleeps[milliseconds];
  if (skip) return;
  const auto start = Clock::now();
  Sleep(milliseconds);
  reallySlept += std::chrono::nanoseconds(Clock::now() - start).count();
}

int WSAAPI CountedConnect(SOCKET one, const sockaddr* peer, int size) {
  ++connects;
  return connect(one, peer, size);
}

int WSAAPI CountedSendTo(SOCKET one, const char* bytes, int count, int flags, const sockaddr* peer,
                         int size) {
  ++datagrams;
  return sendto(one, bytes, count, flags, peer, size);
}

const Import kImports[] = {
    {"Sleep", reinterpret_cast<void*>(CountedSleep)},
    {"connect", reinterpret_cast<void*>(CountedConnect)},
    {"sendto", reinterpret_cast<void*>(CountedSendTo)},
};

}  // namespace

void WatchCalls() {
  for (const Import& import : kImports) {
    if (!Replace(GetModuleHandleA(TAVLYN_LIBRARY), import)) throw std::runtime_error(import.name);
  }
}

std::chrono::milliseconds Slept() { return std::chrono::milliseconds(slept); }

std::chrono::nanoseconds SleptReally() { return std::chrono::nanoseconds(reallySlept); }

int SleepsOf(std::chrono::milliseconds length) { return sleeps[static_cast<std::size_t>(length.count())]; }

void SkipSleeps(bool on) { skip = on; }

int Connects() { return connects; }

int Datagrams() { return datagrams; }

}  // namespace tavlyn::boundary
