// Compares the list of docs/threads.md with what the calls do, or renews it:
//
//   threads_page PAGE
//   threads_page --renew PAGE
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

#include "docs/threads/overlap.h"

namespace tavlyn::page {
namespace {

std::string path;
bool renew = false;

constexpr std::string_view kBegin = "<!-- calls -->\n";
constexpr std::string_view kEnd = "<!-- end -->\n";

// In the order of Overlap.
constexpr std::array<std::string_view, 4> kHeadings = {"### Locked", "### Read", "### Change", "### Talk"};

std::string Lists(const std::map<std::string_view, Overlap>& calls) {
  std::string text;
  for (std::size_t at = 0; at < kHeadings.size(); ++at) {
    std::string names;
    std::size_t line = 0;
    int count = 0;
    for (const auto& [name, overlap] : calls) {
      if (static_cast<std::size_t>(overlap) != at) continue;
      ++count;
      const std::string word = "`" + std::string(name) + "`";
      const bool fits = names.size() + word.size() - line < 118;
      if (!names.empty()) names += fits ? ' ' : '\n';
      if (!fits) line = names.size();
      names += word;
    }
    text += "\n" + std::string(kHeadings[at]) + ": " + std::to_string(count) + "\n\n" + names + "\n";
  }
  return text + "\n";
}

std::string TextOfPage() {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  return text.str();
}

TEST_F(Watched, ThePageIsCurrent) {
  const std::string page = TextOfPage();
  const std::size_t begin = page.find(kBegin);
  const std::size_t end = page.find(kEnd);
  ASSERT_TRUE(begin != std::string::npos && end != std::string::npos) << path << " has no place for the list";
  const std::size_t after = begin + kBegin.size();
  const std::string current = page.substr(0, after) + Lists(OverlapOfAll()) + page.substr(end);
  if (renew) {
    ASSERT_TRUE(std::ofstream(path) << current);
  } else {
    EXPECT_EQ(page, current) << "Renew it:\n  scripts/build release threads_page && "
                                "build/release/bin/threads_page --renew docs/threads.md";
  }
}

}  // namespace
}  // namespace tavlyn::page

int main(int count, char** words) {
  testing::InitGoogleTest(&count, words);
  tavlyn::page::renew = count == 3 && std::string_view(words[1]) == "--renew";
  if (!tavlyn::page::renew && count != 2) {
    std::cerr << "usage: threads_page [--renew] PAGE\n";
    return 2;
  }
  tavlyn::page::path = std::filesystem::absolute(words[count - 1]);
  return RUN_ALL_TESTS();
}
