// A connect with nothing attached, its sleeps counted: the library's import of Sleep leads here, and so do
// those of the calls that each attempt costs and that Wine takes its time for.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>

#include "tests/boundary/imports_windows.h"
#include "tests/boundary/library.h"
#include "tests/boundary/loader.h"

namespace tavlyn::boundary {
namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

// Two sweeps over 254 addresses, with a pause of 2 ms for each.
constexpr unsigned kDefaultPauses = 2 * 254 * 2;

unsigned asked = 0;
Clock::duration slept{};
Clock::duration opening{};

// Adds what it lives for.
class Timed {
 public:
  explicit Timed(Clock::duration& sum) : sum_(sum) {}
  ~Timed() { sum_ += Clock::now() - start_; }
  Timed(const Timed&) = delete;
  Timed& operator=(const Timed&) = delete;

 private:
  Clock::duration& sum_;
  Clock::time_point start_ = Clock::now();
};

void WINAPI CountedSleep(DWORD milliseconds) {
  const Timed timed(slept);
  asked += milliseconds;
  Sleep(milliseconds);
}

SOCKET WSAAPI TimedSocket(int family, int type, int protocol) {
  const Timed timed(opening);
  return socket(family, type, protocol);
}

int WSAAPI TimedCloseSocket(SOCKET one) {
  const Timed timed(opening);
  return closesocket(one);
}

HANDLE WINAPI TimedCreateFile(const char* name, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
                              DWORD how, DWORD flags, HANDLE model) {
  const Timed timed(opening);
  return CreateFileA(name, access, sharing, security, how, flags, model);
}

const Import kImports[] = {
    {"Sleep", reinterpret_cast<void*>(CountedSleep)},
    {"socket", reinterpret_cast<void*>(TimedSocket)},
    {"closesocket", reinterpret_cast<void*>(TimedCloseSocket)},
    {"CreateFileA", reinterpret_cast<void*>(TimedCreateFile)},
};

TEST(NothingAttached, DefaultConnectTakesItsPausesAndNoMore) {
  const Library library;
  for (const Import& import : kImports) {
    ASSERT_TRUE(Replace(GetModuleHandleA(TAVLYN_LIBRARY), import)) << import.name;
  }
  CALL(library, SetConnectProduct)(7);
  double best = 1e9;
  for (int time = 0; time < 3; ++time) {
    asked = 0;
    slept = {};
    opening = {};
    const auto start = Clock::now();
    std::uint32_t did = 0;
    EXPECT_EQ(0u, CALL(library, USBConnect)(&did));
    const double took = Milliseconds(Clock::now() - start).count();
    const double pauses = Milliseconds(slept).count();
    const double opens = Milliseconds(opening).count();
    EXPECT_EQ(kDefaultPauses, asked);
    std::printf("default connect: %.0f ms, of which %.0f ms in pauses of %u ms and %.0f ms in opening\n",
                took, pauses, asked, opens);
    best = std::min(best, took / (pauses + opens));
  }
  // The rest is registry and mutex, which Wine takes its time for as well.
  EXPECT_LE(best, 1.1);
}

}  // namespace
}  // namespace tavlyn::boundary
