// The cable between COM9, which the library opens, and COM12, the far end's. Another process carries its
// bytes (tests/windows/run) in its own time, so bytes in transit are counted and waited for: the library sees
// them at once.
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

// Waits until this many bytes have arrived at that end.
void AwaitArrival(HANDLE end, DWORD count);
// Takes bytes in transit to that end, as many as there is room for; both of its reads return at once.
DWORD TakeArriving(HANDLE end, DWORD& onTheWay, std::span<std::uint8_t> bytes);

}  // namespace tavlyn::boundary
