// The tick of Windows has 32 bits and is handed on as it is.
#include <gtest/gtest.h>

#include "platform/platform.h"
#include "tests/boundary/imports_windows.h"

namespace tavlyn::platform {
namespace {

DWORD ticks = 0;
DWORD WINAPI SetTicks() { return ticks; }

TEST(ClockTest, TheTickStartsAgainFrom0) {
  HMODULE program = GetModuleHandleA(nullptr);
  ASSERT_TRUE(boundary::Replace(program, {"GetTickCount", reinterpret_cast<void*>(SetTicks)}));
  for (const DWORD now : {0xFFFFFFF0u, 5u, 6u}) {
    ticks = now;
    EXPECT_EQ(now, TheHost().clock.Tick());
  }
  void* original =
      reinterpret_cast<void*>(boundary::Original<decltype(GetTickCount)>("kernel32", "GetTickCount"));
  boundary::Replace(program, {"GetTickCount", original});
}

}  // namespace
}  // namespace tavlyn::platform
