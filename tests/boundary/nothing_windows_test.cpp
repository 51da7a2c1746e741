// A connect with nothing attached, its pauses counted: they are redirected here and take no time.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/boundary/imports_windows.h"
#include "tests/boundary/library.h"

namespace tavlyn::boundary {
namespace {

// Two sweeps over 254 addresses, with a pause of 2 ms for each.
constexpr double kDefaultPauses = 2 * 254 * 2;

constexpr double kTick = 15.625;

constexpr DWORD kHighResolution = 2;

double paused = 0;
HANDLE timer = nullptr;
LARGE_INTEGER due;

void WINAPI SleepOfTicks(DWORD milliseconds) { paused += std::ceil(milliseconds / kTick) * kTick; }
void WINAPI CountedSleep(DWORD milliseconds) { paused += milliseconds; }

HANDLE WINAPI NotedTimer(SECURITY_ATTRIBUTES* security, const wchar_t* name, DWORD flags, DWORD access) {
  EXPECT_EQ(flags, kHighResolution);
  return timer = CreateWaitableTimerExW(security, name, flags, access);
}

BOOL WINAPI NotedDue(HANDLE set, const LARGE_INTEGER* when, LONG period, PTIMERAPCROUTINE, void*,
                     BOOL resumes) {
  EXPECT_EQ(set, timer);
  EXPECT_EQ(period, 0);
  due = *when;
  LARGE_INTEGER atOnce{};
  return SetWaitableTimer(set, &atOnce, 0, nullptr, nullptr, resumes);
}

DWORD WINAPI CountedWait(HANDLE object, DWORD limit) {
  if (object == timer) paused -= static_cast<double>(due.QuadPart) / 10'000;
  return WaitForSingleObject(object, limit);
}

class NothingAttached : public testing::Test {
 protected:
  void SetUp() override { Lead({"Sleep", reinterpret_cast<void*>(SleepOfTicks)}); }

  static void Lead(const Import& import) {
    ASSERT_TRUE(Replace(GetModuleHandleA(TAVLYN_LIBRARY), import)) << import.name;
  }

  // What a default connect waits, in milliseconds.
  double PausesOfAConnect() {
    CALL(library_, SetConnectProduct)(7);
    paused = 0;
    std::uint32_t did = 0;
    EXPECT_EQ(CALL(library_, USBConnect)(&did), 0u);
    return paused;
  }

 private:
  const Library library_;
};

TEST_F(NothingAttached, DefaultConnectTakesItsPausesAndNoMore) {
  Lead({"CreateWaitableTimerExW", reinterpret_cast<void*>(NotedTimer)});
  Lead({"SetWaitableTimer", reinterpret_cast<void*>(NotedDue)});
  Lead({"WaitForSingleObject", reinterpret_cast<void*>(CountedWait)});
  EXPECT_EQ(PausesOfAConnect(), kDefaultPauses);
}

TEST_F(NothingAttached, ASystemWithoutPunctualTimersSleeps) {
  Lead(kNoTimers);
  Lead({"Sleep", reinterpret_cast<void*>(CountedSleep)});
  EXPECT_EQ(PausesOfAConnect(), kDefaultPauses);
}

}  // namespace
}  // namespace tavlyn::boundary
