// api/error_text.h: error words in words, in any buffer.
#include "api/error_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace tavlyn {
namespace {

struct Row {
  std::uint32_t value;
  std::uint32_t mask;
  std::string words;
};

const std::vector<Row>& AllRows() {
  static const std::vector<Row> rows = {
#define ERROR_WORD(name, value, mask, words, how, when, remedy) {value, mask, words},
#include "tools/tavlynctl/trouble/error_words.inc"
  };
  return rows;
}

std::string TextOf(std::uint32_t word) {
  std::array<char, TAVLYN_ERROR_TEXT_SIZE> text;
  text.fill('x');
  EXPECT_EQ(tavlyn_error_text(word, text.data(), text.size()), text.data());
  return text.data();
}

// By the table from which the header's is made.
std::string Expected(std::uint32_t word) {
  if (word == 0) return "the library names no reason; the device refused, or its answer was none";
  std::string text;
  for (const Row& row : AllRows()) {
    if ((word & row.mask) != (row.value & row.mask) || text.ends_with(row.words)) continue;
    text += (text.empty() ? "" : "; ") + row.words;
  }
  return text.empty() ? "several failures, whose numbers have joined" : text;
}

TEST(ErrorText, EveryWordAndEveryTwo) {
  for (const Row& one : AllRows()) {
    EXPECT_EQ(TextOf(one.value), Expected(one.value)) << one.words;
    EXPECT_NE(TextOf(one.value).find(one.words), std::string::npos) << one.words;
    for (const Row& other : AllRows()) {
      EXPECT_EQ(TextOf(one.value | other.value), Expected(one.value | other.value));
      EXPECT_EQ(TextOf(one.value + other.value), Expected(one.value + other.value));
    }
  }
}

TEST(ErrorText, WhatAFailureLeaves) {
  EXPECT_EQ(TextOf(0), "the library names no reason; the device refused, or its answer was none");
  EXPECT_EQ(TextOf(TAVLYN_ERR_GET_UNREAD), "the configuration has not been read");
  EXPECT_EQ(TextOf(TAVLYN_ERR_TIME_PARMS + 4), "a value is out of its range");
  EXPECT_EQ(TextOf(TAVLYN_ERR_SECURE + TAVLYN_ERR_WRITE_REPORT),
            "a report could not be sent; an item was not transferred");
  EXPECT_EQ(TextOf(0xB0000000), "several failures, whose numbers have joined");
}

TEST(ErrorText, ARoomForEveryText) {
  std::uint32_t word = 1;
  for (int i = 0; i < 20'000; ++i) {
    word = word * 1664525 + 1013904223;
    ASSERT_EQ(TextOf(word), Expected(word)) << word;
  }
}

TEST(ErrorText, AnyBuffer) {
  const std::string whole = TextOf(0x1000202);
  ASSERT_EQ(whole, "a report could not be sent; the device did not answer");
  for (std::size_t size = 1; size <= whole.size() + 2; ++size) {
    std::vector<char> buffer(size + 1, 'x');
    ASSERT_EQ(tavlyn_error_text(0x1000202, buffer.data(), size), buffer.data());
    EXPECT_EQ(buffer.back(), 'x') << "beyond a buffer of " << size;
    const std::string text = buffer.data();
    if (size > whole.size()) {
      EXPECT_EQ(text, whole);
    } else if (size <= 4) {
      EXPECT_EQ(text, whole.substr(0, size - 1));
    } else {
      EXPECT_EQ(text, whole.substr(0, size - 4) + "...");
    }
  }
}

TEST(ErrorText, WithoutRoomTheFirstPart) {
  char untouched = 'x';
  EXPECT_STREQ(tavlyn_error_text(0x1000202, nullptr, 100), "a report could not be sent");
  EXPECT_STREQ(tavlyn_error_text(0x1000202, &untouched, 0), "a report could not be sent");
  EXPECT_STREQ(tavlyn_error_text(0xB0000000, nullptr, 0), "several failures, whose numbers have joined");
  EXPECT_EQ(untouched, 'x');
}

}  // namespace
}  // namespace tavlyn
