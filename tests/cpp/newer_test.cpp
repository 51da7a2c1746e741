// The same header in a file of C++20, in the same program.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "tavlyn.hpp"

namespace {

TEST(CppNewer, AStreamIsARangeOfTheStandardLibrary) {
  static_assert(std::input_iterator<tavlyn::stream<tavlyn::card_id>::iterator>);
  int next = 0;
  tavlyn::stream<int> stream([&]() -> std::optional<int> { return ++next; });
  EXPECT_EQ(*std::ranges::find(stream, 4), 4);
}

TEST(CppNewer, AViewIsARange) {
  const std::uint8_t bytes[] = {1, 2, 3};
  EXPECT_EQ(std::ranges::count(tavlyn::bytes(bytes, 3), 2), 1);
}

TEST(CppNewer, ReadsAReaderAsTheOthersDo) { EXPECT_EQ(tavlyn::connect().luid(), 1); }

}  // namespace
