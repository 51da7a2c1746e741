// Windows' tick count has 32 bits and is passed on unchanged; the time of day is the system's.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

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

void WINAPI SetTime(SYSTEMTIME* now) { *now = {2026, 2, 6, 28, 23, 59, 58, 999}; }

TEST(ClockTest, TheTimeIsTheSystemsWhateverTZSays) {
  _putenv("TZ=EST-5");
  _tzset();
  HMODULE program = GetModuleHandleA(nullptr);
  EXPECT_TRUE(boundary::Replace(program, {"GetLocalTime", reinterpret_cast<void*>(SetTime)}));
  const std::tm local = TheHost().clock.LocalTime();
  char text[32] = "";
  std::strftime(text, sizeof text, "%a %Y%m%d %H:%M:%S", &local);
  EXPECT_STREQ(text, "Sat 20260228 23:59:58");
  _putenv("TZ=");
  _tzset();
}

}  // namespace
}  // namespace tavlyn::platform
