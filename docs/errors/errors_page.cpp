// Compares what docs/errors.md and include/api/types.h say of the error words with the table of them, or
// renews both:
//
//   errors_page PAGE HEADER
//   errors_page --renew PAGE HEADER
#include <array>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>

#include "tools/tavlynctl/error_words.h"

namespace {

struct Word {
  std::string name;
  std::uint32_t value;
  std::string words, how, when, remedy;
};

const Word kWords[] = {
#define ERROR_WORD(name, value, match, words, how, when, remedy) \
  {"TAVLYN_ERR_" #name, value, words, how, when, remedy},
#include "tools/tavlynctl/error_words.inc"
};

// Sums that a program may meet, for the page.
constexpr std::uint32_t kSums[] = {0x20202, 0x40202, 0x1000202, 0x201012, 0x30000203, 0x81000202};

std::string Hex(std::uint32_t word) {
  std::array<char, 11> text{};
  std::snprintf(text.data(), text.size(), "0x%X", static_cast<unsigned>(word));
  return text.data();
}

std::string Padded(std::string text, std::size_t width) {
  text.resize(text.size() < width ? width : text.size(), ' ');
  return text;
}

std::string Anchor(std::string name) {
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return name;
}

std::string Defines() {
  std::string text;
  for (const Word& word : kWords) {
    text += "#define " + Padded(word.name, 28) + " " + Padded(Hex(word.value) + "u", 12) + " /**< " +
            word.how + ": " + word.when + " */\n";
  }
  return text;
}

std::string Sums() {
  std::string text = "\n| Word | In words |\n|---|---|\n";
  for (const std::uint32_t sum : kSums) {
    text += "| `" + Hex(sum) + "` | " + tavlyn::ctl::ErrorWords(sum) + " |\n";
  }
  return text + "\n";
}

std::string Sections() {
  std::string text = "\n| Word | Name | In words |\n|---|---|---|\n";
  for (const Word& word : kWords) {
    text += "| `" + Hex(word.value) + "` | [" + word.name + "](#" + Anchor(word.name) + ") | " + word.words +
            " |\n";
  }
  for (const Word& word : kWords) {
    text += "\n### " + word.name + "\n\n`" + Hex(word.value) + "`. " + word.how + ": " + word.when + "\n\n" +
            word.remedy + "\n";
  }
  return text + "\n";
}

// The text with what stands between the two marks made anew; empty if it does not have them.
std::string With(const std::string& text, std::string_view begin, std::string_view end,
                 const std::string& made) {
  const std::size_t first = text.find(begin);
  const std::size_t last = text.find(end, first);
  if (first == std::string::npos || last == std::string::npos) return "";
  return text.substr(0, first + begin.size()) + made + text.substr(last);
}

std::string PageOf(const std::string& text) {
  return With(With(text, "<!-- sums -->\n", "<!-- end -->", Sums()), "<!-- words -->\n", "<!-- end -->",
              Sections());
}

std::string HeaderOf(const std::string& text) {
  return With(text, " * @{ */\n/* clang-format off */\n", "/* clang-format on */", Defines());
}

bool IsCurrent(const char* path, std::string (*made)(const std::string&), bool renew) {
  std::ostringstream text;
  text << std::ifstream(path).rdbuf();
  const std::string current = made(text.str());
  if (current.empty()) std::cerr << path << " has no place for the error words\n";
  if (current.empty() || current == text.str()) return !current.empty();
  if (renew) return static_cast<bool>(std::ofstream(path) << current);
  std::cerr << path << " is not current. Renew it:\n"
            << "  scripts/build release errors_page && build/release/bin/errors_page --renew docs/errors.md "
               "include/api/types.h\n";
  return false;
}

}  // namespace

int main(int count, char** words) {
  const bool renew = count == 4 && std::string_view(words[1]) == "--renew";
  if (!renew && count != 3) {
    std::cerr << "usage: errors_page [--renew] PAGE HEADER\n";
    return 2;
  }
  const bool page = IsCurrent(words[count - 2], PageOf, renew);
  const bool header = IsCurrent(words[count - 1], HeaderOf, renew);
  return page && header ? 0 : 1;
}
