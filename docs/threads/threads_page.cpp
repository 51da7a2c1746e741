// Compares the list of docs/threads.md with what the calls do, or renews it (docs/renewal).
#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "docs/renewal/renewal.h"
#include "docs/threads/overlap.h"

namespace tavlyn::page {
namespace {

std::vector<std::string> arguments;

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
    text += std::string(kHeadings[at]) + ": " + std::to_string(count) + "\n\n" + names + "\n\n";
  }
  text.pop_back();
  return text;
}

TEST_F(Watched, ThePageIsCurrent) {
  const auto calls = [this](const std::string& /*name*/) { return Lists(OverlapOfAll()); };
  EXPECT_EQ(
      Renewal(arguments, calls,
              "scripts/build release threads_page && build/release/bin/threads_page --renew docs/threads.md"),
      0);
}

}  // namespace
}  // namespace tavlyn::page

int main(int count, char** words) {
  testing::InitGoogleTest(&count, words);
  // The test works in a folder of its own.
  tavlyn::page::arguments.assign(words + 1, words + count);
  for (std::string& word : tavlyn::page::arguments) {
    if (!word.starts_with("--")) word = std::filesystem::absolute(word);
  }
  return RUN_ALL_TESTS();
}
