// What the library asks of the system. On Linux the program that links calls_linux.cpp defines the functions
// of libc anew and exports them, so that the whole process is counted; on Windows the library's imports are
// led elsewhere.
#pragma once

#include <chrono>

namespace tavlyn::boundary {

// Begins to count for a library that has just been loaded.
void WatchCalls();

// The sum of all sleeps asked for since the start.
std::chrono::milliseconds Slept();
// What they really took: a machine wakes up late.
std::chrono::nanoseconds SleptReally();
int SleepsOf(std::chrono::milliseconds length);
// From now on a sleep takes no time.
void SkipSleeps(bool skip);

// TCP connects and datagrams that were handed to the system.
int Connects();
int Datagrams();

}  // namespace tavlyn::boundary
