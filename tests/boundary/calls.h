// What the library asks of the system. On Linux the program that links calls_linux.cpp redefines libc's
// functions and exports them, so that the whole process is counted; on Windows the library's imports are
// redirected. Sleeps and waits take no time (passing.h).
#pragma once

#include <chrono>

namespace tavlyn::boundary {

// Starts counting for a library that has just been loaded.
void WatchCalls();

// The sum of all sleeps asked for since the start.
std::chrono::milliseconds Slept();
int SleepsOf(std::chrono::milliseconds length);

// TCP connects and datagrams passed to the system.
int Connects();
int Datagrams();

// Asked before each wait for a descriptor, if set: the error number with which it fails, or 0. On Linux only.
extern int (*waitFailure)();

// A short pause by the real clock, for what other processes do.
void ReallyRest();

// While it lives, time is the system's.
class RealTime {
 public:
  RealTime();
  ~RealTime();
  RealTime(const RealTime&) = delete;
  RealTime& operator=(const RealTime&) = delete;
};

}  // namespace tavlyn::boundary
