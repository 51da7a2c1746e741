#include <algorithm>
#include <array>
#include <map>
#include <stdexcept>

#include "tests/boundary/cable_windows.h"
#include "tests/boundary/calls.h"
#include "tests/boundary/imports_windows.h"
#include "tests/boundary/passing.h"

namespace tavlyn::boundary {
namespace {

using std::chrono::milliseconds;

std::map<milliseconds, int> sleeps;
milliseconds slept{};
int connects = 0;
int datagrams = 0;
std::map<HANDLE, COMMTIMEOUTS> asked;  // of each serial port

void WINAPI PassingSleep(DWORD wanted) {
  const milliseconds length(wanted);
  slept += length;
  ++sleeps[length];
  PassUntil(Now() + length, [] { return false; });
}

DWORD WINAPI PassingTicks() {
  return static_cast<DWORD>(std::chrono::duration_cast<milliseconds>(Now().time_since_epoch()).count());
}

// This program's own clock.
BOOL WINAPI PassingCounter(LARGE_INTEGER* counter) {
  LARGE_INTEGER frequency;
  QueryPerformanceFrequency(&frequency);
  counter->QuadPart = Now().time_since_epoch().count() / (1'000'000'000 / frequency.QuadPart);
  return TRUE;
}

// The system's reads never wait; the waits of the library's reads are simulated below.
BOOL WINAPI KeptTimeouts(HANDLE port, COMMTIMEOUTS* timeouts) {
  asked[port] = *timeouts;
  COMMTIMEOUTS atOnce = *timeouts;
  atOnce.ReadIntervalTimeout = MAXDWORD;
  atOnce.ReadTotalTimeoutMultiplier = atOnce.ReadTotalTimeoutConstant = 0;
  return SetCommTimeouts(port, &atOnce);
}

BOOL WINAPI PassingRead(HANDLE file, void* bytes, DWORD size, DWORD* count, OVERLAPPED* overlapped) {
  const auto port = asked.find(file);
  if (port == asked.end()) return ReadFile(file, bytes, size, count, overlapped);
  const auto& [interval, multiplier, constant, write, writeConstant] = port->second;
  const milliseconds whole = size * milliseconds(multiplier) + milliseconds(constant);
  const Moment start = Now();
  *count = 0;
  sim::DueTime end;
  do {
    *count += TakeArriving(file, cable.toNear, {static_cast<std::uint8_t*>(bytes) + *count, size - *count});
    if (*count == size) break;
    end.reset();
    if (whole.count() > 0 || interval == MAXDWORD) end = start + whole;
    if (*count > 0 && interval > 0 && interval < MAXDWORD) {
      end = sim::Sooner(end, Now() + milliseconds(interval));
    }
  } while (PassUntil(end, [] { return cable.toNear > 0; }));
  return TRUE;
}

BOOL WINAPI CountedWrite(HANDLE file, const void* bytes, DWORD size, DWORD* count, OVERLAPPED* overlapped) {
  const BOOL written = WriteFile(file, bytes, size, count, overlapped);
  if (asked.contains(file)) cable.toFar += *count;
  return written;
}

BOOL WINAPI WholeFlush(HANDLE file) {
  if (asked.contains(file) && cable.farEnd != INVALID_HANDLE_VALUE) AwaitArrival(cable.farEnd, cable.toFar);
  return FlushFileBuffers(file);
}

BOOL WINAPI WholePurge(HANDLE port, DWORD what) {
  AwaitArrival(port, cable.toNear);
  cable.toNear = 0;
  return PurgeComm(port, what);
}

// Small pieces would otherwise wait for an acknowledgement, which takes time.
int WSAAPI CountedConnect(SOCKET one, const sockaddr* peer, int size) {
  ++connects;
  const BOOL on = TRUE;
  setsockopt(one, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
  return connect(one, peer, size);
}

int WSAAPI CountedSendTo(SOCKET one, const char* bytes, int count, int flags, const sockaddr* peer,
                         int size) {
  ++datagrams;
  return sendto(one, bytes, count, flags, peer, size);
}

const Import kOwnClock{"QueryPerformanceCounter", reinterpret_cast<void*>(PassingCounter)};
const Import kImports[] = {
    kNoTimers,
    {"Sleep", reinterpret_cast<void*>(PassingSleep)},
    {"GetTickCount", reinterpret_cast<void*>(PassingTicks)},
    {"SetCommTimeouts", reinterpret_cast<void*>(KeptTimeouts)},
    {"ReadFile", reinterpret_cast<void*>(PassingRead)},
    {"WriteFile", reinterpret_cast<void*>(CountedWrite)},
    {"FlushFileBuffers", reinterpret_cast<void*>(WholeFlush)},
    {"PurgeComm", reinterpret_cast<void*>(WholePurge)},
    {"connect", reinterpret_cast<void*>(CountedConnect)},
    {"sendto", reinterpret_cast<void*>(CountedSendTo)},
};

void Lead(HMODULE image, const Import& import) {
  if (!Replace(image, import)) throw std::runtime_error(import.name);
}

}  // namespace

void WatchCalls() {
  Lead(GetModuleHandleA(nullptr), kOwnClock);
  for (const Import& import : kImports) Lead(GetModuleHandleA(TAVLYN_LIBRARY), import);
}

std::chrono::milliseconds Slept() { return slept; }

int SleepsOf(std::chrono::milliseconds length) { return sleeps[length]; }

int Connects() { return connects; }

int Datagrams() { return datagrams; }

void ReallyRest() { Sleep(1); }

}  // namespace tavlyn::boundary
