// Windows' tick count has 32 bits and is passed on unchanged; the time of day is the system's.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <vector>

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

std::vector<DWORD> pauses;
void WINAPI NotedSleep(DWORD milliseconds) { pauses.push_back(milliseconds); }

TEST(ClockTest, WithoutPunctualTimersThePauseIsTheSystems) {
  const boundary::Redirected sleep("kernel32", "Sleep", reinterpret_cast<void*>(NotedSleep));
  ASSERT_TRUE(sleep.Done());
  const struct {
    const char* name;
    void* refusal;
  } kCalls[] = {
      {boundary::kNoTimers.name, boundary::kNoTimers.replacement},
      {"SetWaitableTimer", boundary::ConstantAnswer<FALSE>(SetWaitableTimer)},
      {"WaitForSingleObject", boundary::ConstantAnswer<WAIT_TIMEOUT>(WaitForSingleObject)},
  };
  for (const auto& call : kCalls) {
    const boundary::Redirected refused("kernel32", call.name, call.refusal);
    EXPECT_TRUE(refused.Done()) << call.name;
    pauses.clear();
    TheHost().clock.Sleep(7);
    EXPECT_EQ(pauses, std::vector<DWORD>{7}) << call.name;
  }
  pauses.clear();
  TheHost().clock.Sleep(1);
  EXPECT_TRUE(pauses.empty());
}

}  // namespace
}  // namespace tavlyn::platform
