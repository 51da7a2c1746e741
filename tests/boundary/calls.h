// What the process asks of libc, the library included: the program that links calls_linux.cpp defines these
// functions anew and exports them.
#pragma once

#include <chrono>

namespace tavlyn::boundary {

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
