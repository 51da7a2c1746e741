// What is left in a process after the library is unloaded.
#include <gtest/gtest.h>
#include <winsock2.h>

// winsock2.h has to come first.
#include <windows.h>

#include <array>

#include "sim/carriers/clock/quick_time.h"
#include "tests/boundary/library.h"
#include "tests/boundary/open_handles.h"

namespace tavlyn::boundary {
namespace {

// The system has 1088 thread-local slots for a process.
constexpr int kLoads = 1200;

std::size_t TakenOf(HANDLE heap) {
  std::size_t taken = 0;
  PROCESS_HEAP_ENTRY entry{};
  while (HeapWalk(heap, &entry)) {
    if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) taken += entry.cbData;
  }
  return taken;
}

struct Taken {
  std::size_t heap = 0;
  int handles = 0;
  DWORD threadSlot = 0;
  DWORD fiberSlot = 0;
};

Taken OfThisProcess() {
  Taken taken;
  std::array<HANDLE, 16> heaps{};
  const DWORD count = GetProcessHeaps(heaps.size(), heaps.data());
  for (DWORD heap = 0; heap < count && heap < heaps.size(); ++heap) taken.heap += TakenOf(heaps[heap]);
  taken.handles = OpenHandles();
  taken.threadSlot = TlsAlloc();
  TlsFree(taken.threadSlot);
  taken.fiberSlot = FlsAlloc(nullptr);
  FlsFree(taken.fiberSlot);
  return taken;
}

TEST(Load, TwelveHundredTimesLeaveNothing) {
  SetVariable("TAVLYNAPI_LOGGING", "1");
  const auto once = [] {
    const Library library;
    TakeItsTime();
    library.Standin("plug reader");
    CALL(library, SetDevTypeSrch)(0);
    EXPECT_EQ(CALL(library, USBConnect)(nullptr), 1U);
    // From now on nothing refers to the first handle.
    EXPECT_EQ(CALL(library, USBConnect)(nullptr), 1U);
    library.Standin("reset");
  };
  for (int time = 0; time < 10; ++time) once();
  ASSERT_EQ(GetModuleHandleA(TAVLYN_LIBRARY), nullptr) << "it would leave nothing because it stays";
  const Taken before = OfThisProcess();
  for (int time = 0; time < kLoads && !testing::Test::HasFailure(); ++time) once();
  const Taken after = OfThisProcess();
  EXPECT_EQ(after.threadSlot, before.threadSlot);
  EXPECT_EQ(after.fiberSlot, before.fiberSlot);
  EXPECT_EQ(after.handles, before.handles);
  EXPECT_LT(after.heap, before.heap + kLoads);
}

}  // namespace
}  // namespace tavlyn::boundary
