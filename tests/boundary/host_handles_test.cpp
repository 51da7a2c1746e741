// The library's numbers for the system's handles, which several threads take and give back at once.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <optional>
#include <thread>
#include <utility>

#include "platform/handle_table.h"
#include "tests/boundary/calls.h"

namespace tavlyn::boundary {
namespace {

using platform::Handle;

// A native handle that something happens to whenever it is copied.
struct Native {
  Native(int number, std::function<void()> copied) : value(number), whenCopied(std::move(copied)) {}
  Native(const Native& other) : value(other.value), whenCopied(other.whenCopied) { whenCopied(); }
  Native& operator=(const Native&) = delete;
  ~Native() = default;

  int value;
  std::function<void()> whenCopied;
};

void Close(const Native& /*native*/) {}

TEST(HostHandles, TwoThreadsGetANumberEach) {
  platform::HandleTable<Native> table;
  std::atomic<bool> begun = false;
  std::atomic<bool> ended = false;
  std::array<Handle, 2> numbers{};
  std::thread other([&] {
    while (!begun) std::this_thread::yield();
    numbers[1] = table.Add(Native(2, [] {}), Close);
    ended = true;
  });
  // Amid its own step the first gives the other more time than that needs, if it may.
  numbers[0] = table.Add(Native(1,
                                [&] {
                                  begun = true;
                                  for (int turn = 0; turn < 20 && !ended; ++turn) ReallyRest();
                                }),
                         Close);
  other.join();
  EXPECT_NE(numbers[0], numbers[1]);
  for (const int value : {2, 1}) {
    const auto removed = table.Remove(numbers[static_cast<std::size_t>(value) - 1]);
    EXPECT_TRUE(removed.has_value() && removed->value == value) << value;
  }
  EXPECT_FALSE(table.RemoveNewest().has_value());
}

TEST(HostHandles, ANumberIsGivenOnce) {
  platform::HandleTable<int> table;
  const auto close = [](int /*native*/) {};
  const Handle first = table.Add(7, close);
  EXPECT_EQ(table.Remove(first), 7);
  EXPECT_NE(table.Add(7, close), first);
  EXPECT_EQ(table.Find(first), std::nullopt);
  EXPECT_EQ(table.RemoveNewest(), 7);
}

}  // namespace
}  // namespace tavlyn::boundary
