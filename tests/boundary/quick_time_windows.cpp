#include <atomic>
#include <stdexcept>

#include "sim/carriers/clock/quick_time.h"
#include "tests/boundary/imports_windows.h"

namespace tavlyn::boundary {
namespace {

std::atomic<DWORD> ticks{1000};

void WINAPI QuickSleep(DWORD milliseconds) { ticks += milliseconds; }

DWORD WINAPI QuickTicks() { return ticks; }

}  // namespace

void TakeItsTime() {
  HMODULE library = GetModuleHandleA(TAVLYN_LIBRARY);
  if (!Replace(library, kNoTimers) || !Replace(library, {"Sleep", reinterpret_cast<void*>(QuickSleep)}) ||
      !Replace(library, {"GetTickCount", reinterpret_cast<void*>(QuickTicks)})) {
    throw std::runtime_error("the library has another clock");
  }
}

void PassQuickly(std::chrono::milliseconds length) { ticks += static_cast<DWORD>(length.count()); }

}  // namespace tavlyn::boundary
