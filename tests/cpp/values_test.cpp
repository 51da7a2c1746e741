// Views, IDs, error words: what needs no device.
#include <gtest/gtest.h>

#include <set>

#include "tavlyn.hpp"

namespace {

constexpr std::array<std::uint8_t, tavlyn::card_id::most_bytes> kId{0x01, 0x02, 0x03, 0x03};

TEST(CppView, ShowsElementsOfOthers) {
  int numbers[] = {1, 2, 3};
  const tavlyn::view<int> view(numbers, 3);
  view[1] = 5;
  EXPECT_EQ(numbers[1], 5);
  EXPECT_EQ(view.end() - view.begin(), 3);
  EXPECT_TRUE(tavlyn::view<int>().empty());
}

TEST(CppCard, ShowsTheHighestByteFirst) {
  const tavlyn::card_id card(26, kId);
  EXPECT_EQ(card.bits(), 26U);
  EXPECT_EQ(card.bytes().size(), 4U);
  EXPECT_EQ(card.hex(), "03030201");
  EXPECT_EQ(tavlyn::hex(card.bytes()), "01020303");
  EXPECT_EQ(tavlyn::card_id(16, kId).hex(), "0201");
}

TEST(CppCard, OfMoreBitsThanItHoldsShowsThoseThatItHas) {
  EXPECT_EQ(tavlyn::card_id(300, kId).bytes().size(), tavlyn::card_id::most_bytes);
}

TEST(CppCard, DiffersByBitsAndBytes) {
  const tavlyn::card_id card(26, kId);
  EXPECT_EQ(card, tavlyn::card_id(26, kId));
  EXPECT_NE(card, tavlyn::card_id(27, kId));
  EXPECT_NE(card, tavlyn::card_id(26, {}));
  EXPECT_EQ(std::set({card, card, tavlyn::card_id(27, kId)}).size(), 2U);
}

TEST(CppErrorWord, HasWords) {
  const tavlyn::error_word word(TAVLYN_ERR_COMMAND | TAVLYN_ERR_WRITE_REPORT);
  EXPECT_EQ(word.text(), "a report could not be sent; the device did not answer");
  EXPECT_EQ(word.hex(), "0x1000202");
  EXPECT_EQ(tavlyn::error_word().hex(), "0x0");
  EXPECT_EQ(word, tavlyn::error_word(0x1000202));
}

TEST(CppError, SaysTheWordToo) {
  const tavlyn::error error{tavlyn::error_word(TAVLYN_ERR_COMMAND)};
  EXPECT_STREQ(error.what(), "the device did not answer (error word 0x1000000)");
  EXPECT_EQ(error.text(), "the device did not answer");
  EXPECT_STREQ(tavlyn::error(tavlyn::error_word(), "no reader is plugged in").what(),
               "no reader is plugged in");
}

TEST(CppStream, EndsWithItsSource) {
  int left = 3;
  tavlyn::stream<int> stream([&]() -> std::optional<int> {
    if (left == 0) return std::nullopt;
    return left--;
  });
  std::vector<int> seen;
  for (const int one : stream) seen.push_back(one);
  EXPECT_EQ(seen, (std::vector<int>{3, 2, 1}));
}

TEST(CppStream, IsOverWhenOneOfSeveralFailuresInARowIsTheThird) {
  int asked = 0;
  const auto fail = [&]() -> std::optional<int> {
    ++asked;
    throw tavlyn::error{tavlyn::error_word(TAVLYN_ERR_COMMAND)};
  };
  EXPECT_THROW(tavlyn::detail::await<int>(tavlyn::clock::time_point::max(), {}, fail), tavlyn::error);
  EXPECT_EQ(asked, 3);
}

TEST(CppStream, AsksOnceWhenThereIsNoTime) {
  int asked = 0;
  const auto ask = [&]() -> std::optional<int> {
    ++asked;
    return std::nullopt;
  };
  EXPECT_EQ(tavlyn::detail::await<int>(tavlyn::clock::now(), {}, ask), std::nullopt);
  EXPECT_EQ(asked, 1);
}

using tavlyn::detail::card_changes;

std::vector<std::string> Told(const std::vector<std::optional<tavlyn::card_id>>& seen) {
  card_changes changes;
  std::vector<std::string> told;
  for (const auto& card : seen) {
    changes.take(card);
    while (const auto event = changes.next())
      told.push_back((event->arrived ? "+" : "-") + event->card.hex());
  }
  return told;
}

TEST(CppCards, ComeAndGo) {
  const tavlyn::card_id one(16, kId);
  const tavlyn::card_id other(24, kId);
  EXPECT_EQ(Told({std::nullopt, one, one, other, std::nullopt}),
            (std::vector<std::string>{"+0201", "-0201", "+030201", "-030201"}));
}

TEST(CppCards, OfZerosAreBelievedTheSecondTime) {
  const tavlyn::card_id card(16, kId);
  const tavlyn::card_id zeros(16, {});
  EXPECT_EQ(Told({zeros, card}), std::vector<std::string>{"+0201"});
  EXPECT_EQ(Told({zeros, zeros}), std::vector<std::string>{"+0000"});
  EXPECT_EQ(Told({zeros, std::nullopt}), (std::vector<std::string>{"+0000", "-0000"}));
}

}  // namespace
