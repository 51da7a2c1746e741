// Nothing in a poll allocates: neither an exchange nor an ID read, with the trace off.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>

#include "sim/carriers/clock/quick_time.h"
#include "tests/boundary/library.h"

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define TAVLYN_COUNTS_ALLOCATIONS 0
#else
#define TAVLYN_COUNTS_ALLOCATIONS 1
#endif

namespace {

std::atomic<bool> counting{false};
std::atomic<int> allocations{0};

}  // namespace

#if TAVLYN_COUNTS_ALLOCATIONS
// These replace the C library's own in the whole process, including the library and the stand-in.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

void* malloc(std::size_t size) {
  if (counting) ++allocations;
  return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
  if (counting) ++allocations;
  return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
  if (counting) ++allocations;
  return __libc_realloc(memory, size);
}
}
#endif

namespace tavlyn::boundary {
namespace {

class Allocations : public ::testing::Test {
 protected:
  void SetUp() override {
    if (TAVLYN_COUNTS_ALLOCATIONS == 0)
      GTEST_SKIP() << "a sanitizer has replaced malloc: allocations are not counted";
    library_.Standin("reset");
    library_.Standin("plug reader");
    library_.Standin("record off");
    CALL(library_, SetDevTypeSrch)(0);
    ASSERT_EQ(CALL(library_, USBConnect)(nullptr), 1U);
  }
  void TearDown() override { CALL(library_, USBDisconnect)(); }

  template <typename Call>
  int Counted(Call call) {
    allocations = 0;
    counting = true;
    call();
    counting = false;
    return allocations;
  }

  Library library_;
};

TEST_F(Allocations, TheCountingWorks) {
  EXPECT_EQ(Counted([] {
              auto* volatile one = new int(1);
              delete one;
            }),
            1);
}

TEST_F(Allocations, AnExchangeMakesNone) {
  const auto ping = CALL(library_, Ping);
  std::uint32_t slowest = 0;
  EXPECT_EQ(Counted([&] {
              for (int time = 0; time < 100; ++time) slowest = std::max(slowest, ping());
            }),
            0);
  EXPECT_LE(slowest, 65535U) << "the reader did not answer";
}

TEST_F(Allocations, AnIdReadMakesNone) {
  library_.Standin("card 0102:16");
  const auto read = CALL(library_, GetActiveID);
  PassQuickly(std::chrono::milliseconds(250));
  std::uint8_t id[8] = {};
  std::uint16_t bits = 0;
  EXPECT_EQ(Counted([&] { bits = read(id, sizeof id); }), 0);
  EXPECT_EQ(bits, 16);
}

}  // namespace
}  // namespace tavlyn::boundary
