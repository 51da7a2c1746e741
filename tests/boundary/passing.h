// Time that passes only in waits. The program that links this replaces the system's clock, sleeps and waits
// (calls_linux.cpp, calls_windows.cpp). Far ends act on schedule while somebody waits, and nobody really
// waits: so every wait takes exactly as long as requested, even on the busiest machine. All of it is for one
// thread.
#pragma once

#include <chrono>
#include <functional>

#include "sim/carriers/served.h"

namespace tavlyn::boundary {

using Moment = std::chrono::steady_clock::time_point;

// The time on this program's clock.
Moment Now();

// Serves the far ends until something is ready (true) or the moment has come. Without a moment only another
// process can end the wait, so it is then a real one.
bool PassUntil(sim::DueTime end, const std::function<bool()>& ready);

// While it lives, far ends are working, whose own waits are real.
bool FarEndsAreAtWork();
// Called, if set, before they begin and after they have ended.
extern void (*farEndsBegin)();
extern void (*farEndsEnd)();

// How long something takes, in milliseconds.
template <typename Call>
int TimeOf(Call call) {
  const Moment start = Now();
  call();
  return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(Now() - start).count());
}

}  // namespace tavlyn::boundary
