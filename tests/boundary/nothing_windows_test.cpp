// A connect with nothing attached, its pauses counted: the library's import of Sleep leads here.
#include <gtest/gtest.h>

#include "tests/boundary/imports_windows.h"
#include "tests/boundary/library.h"

namespace tavlyn::boundary {
namespace {

// Two sweeps over 254 addresses, with a pause of 2 ms for each.
constexpr unsigned kDefaultPauses = 2 * 254 * 2;

unsigned asked = 0;

void WINAPI CountedSleep(DWORD milliseconds) { asked += milliseconds; }

TEST(NothingAttached, DefaultConnectTakesItsPausesAndNoMore) {
  const Library library;
  ASSERT_TRUE(Replace(GetModuleHandleA(TAVLYN_LIBRARY), {"Sleep", reinterpret_cast<void*>(CountedSleep)}));
  CALL(library, SetConnectProduct)(7);
  asked = 0;
  std::uint32_t did = 0;
  EXPECT_EQ(0u, CALL(library, USBConnect)(&did));
  EXPECT_EQ(kDefaultPauses, asked);
}

}  // namespace
}  // namespace tavlyn::boundary
