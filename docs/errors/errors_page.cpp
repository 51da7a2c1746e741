// Compares what docs/errors.md and include/api/types.h say of the error words with the table of them, or
// renews both (docs/renewal).
#include <array>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "docs/renewal/renewal.h"
#include "tools/tavlynctl/trouble/error_words.h"

namespace tavlyn::page {
namespace {

struct Word {
  std::string name;
  std::uint32_t value;
  std::string words, how, when, remedy;
};

const Word kWords[] = {
#define ERROR_WORD(name, value, mask, words, how, when, remedy) \
  {"TAVLYN_ERR_" #name, value, words, how, when, remedy},
#include "tools/tavlynctl/trouble/error_words.inc"
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
  std::vector<Row> rows;
  for (const std::uint32_t sum : kSums) rows.push_back({Code(Hex(sum)), ctl::ErrorWords(sum)});
  return Table({"Word", "In words"}, rows);
}

std::string Sections() {
  std::vector<Row> rows;
  std::string sections;
  for (const Word& word : kWords) {
    rows.push_back({Code(Hex(word.value)), "[" + word.name + "](#" + Anchor(word.name) + ")", word.words});
    sections += "\n### " + word.name + "\n\n" + Code(Hex(word.value)) + ". " + word.how + ": " + word.when +
                "\n\n" + word.remedy + "\n";
  }
  return Table({"Word", "Name", "In words"}, rows) + sections;
}

constexpr NamedTable kTables[] = {
    {"error words", Defines},
    {"sums", Sums},
    {"words", Sections},
};

}  // namespace
}  // namespace tavlyn::page

int main(int count, char** words) {
  return tavlyn::page::Renewal(
      {words + 1, words + count}, tavlyn::page::Among(tavlyn::page::kTables),
      "scripts/build release errors_page && build/release/bin/errors_page --renew docs/errors.md "
      "include/api/types.h");
}
