// Time that passes in waits alone. The program that links this takes the place of the system's clock, sleeps
// and waits (calls_linux.cpp, calls_windows.cpp). Far ends do what they have to do while somebody waits, each
// thing at its moment, and nobody really waits: so every wait is as long as it was asked to be, on the
// busiest machine. All of it is for one thread.
#pragma once

#include <chrono>
#include <functional>

#include "sim/carriers/served.h"

namespace tavlyn::boundary {

using Moment = std::chrono::steady_clock::time_point;

// What the clock of this program shows.
Moment Now();

// Serves the far ends until something is ready or the moment has come, true: it is ready. Without a moment
// only another process can end it, so it then really waits.
bool PassUntil(sim::DueTime end, const std::function<bool()>& ready);

// Meanwhile far ends are at work, whose own waits are the system's.
bool FarEndsAreAtWork();

// How long something takes, in milliseconds.
template <typename Call>
int TimeOf(Call call) {
  const Moment start = Now();
  call();
  return static_cast<int>(std::chrono::duration_cast<std::chrono::milliseconds>(Now() - start).count());
}

}  // namespace tavlyn::boundary
