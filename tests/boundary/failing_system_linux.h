// System calls that fail. Those that the library makes while it is watched are counted, and one of them can
// be made to fail, also where the C library makes it on behalf of a file. All of it is for one thread.
#pragma once

#include <cstddef>
#include <span>

namespace tavlyn::boundary {

// What a call does instead of what was asked.
enum class Mishap {
  kError,    // it fails
  kShort,    // it moves one byte
  kNothing,  // it reports the end
};

// How a system call can fail.
struct SystemWay {
  long call;  // its number
  const char* name;
  Mishap mishap = Mishap::kError;
  int error = 0;
  // A serial port has to hide it.
  bool harmless = false;
};
std::span<const SystemWay> SystemWays();

// False where the kernel does not let a program catch its own calls.
bool SystemCanFail();

// Counts from 1 from here on, and lets that call fail if it is one of the way's; with call 0 none fails.
void WatchSystem(std::size_t call = 0, const SystemWay* way = nullptr);
// Ends the watch. The numbers of the calls since it began, in order.
std::span<const long> UnwatchSystem();

}  // namespace tavlyn::boundary
