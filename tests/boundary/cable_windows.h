// The cable between COM9, which the library opens, and COM12, the far end's. Another process carries its
// bytes (tests/windows/run) in its own time, so what is on its way is counted and waited for: to the library
// it is there at once.
#pragma once

#include <winsock2.h>

// winsock2.h has to come first.
#include <windows.h>

#include <cstdint>
#include <span>

namespace tavlyn::boundary {

struct Cable {
  DWORD toFar = 0;
  DWORD toNear = 0;
  HANDLE farEnd = INVALID_HANDLE_VALUE;
};
extern Cable cable;

// Waits until so many bytes lie at that end.
void AwaitArrival(HANDLE end, DWORD count);
// Takes bytes that are on their way to that end, as many as there is room for; both of its reads return at
// once.
DWORD TakeArriving(HANDLE end, DWORD& onTheWay, std::span<std::uint8_t> bytes);

}  // namespace tavlyn::boundary
