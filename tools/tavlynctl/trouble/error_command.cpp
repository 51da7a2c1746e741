// error.
#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <vector>

#include "tools/nearest.h"
#include "tools/printable.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/trouble/error_words.h"

namespace tavlyn::ctl {
namespace {

constexpr std::string_view kPrefix = "TAVLYN_ERR_";

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

bool BeginsWithDigit(const std::string& word) {
  return std::isdigit(static_cast<unsigned char>(word[0])) != 0;
}

// "0x20202", "131586".
std::uint32_t NumberOf(const std::string& word) {
  const bool isHex = Upper(word).starts_with("0X");
  const char* first = word.data() + (isHex ? 2 : 0);
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(first, word.data() + word.size(), number, isHex ? 16 : 10);
  if (error == std::errc() && end == word.data() + word.size()) return number;
  throw Failure(kUsage, word + " is not an error word of 32 bits, such as 0x20202 or 131586");
}

std::uint32_t ValueOf(const std::string& word) {
  if (word.empty() || BeginsWithDigit(word)) return NumberOf(word);
  const std::string wanted = Upper(word);
  std::vector<std::string> names;
  for (const ErrorWord& one : AllErrorWords()) {
    names.emplace_back(std::string_view(one.name).substr(wanted.starts_with(kPrefix) ? 0 : kPrefix.size()));
    if (names.back() == wanted) return one.value;
  }
  throw Failure(kUsage, "there is no error word " + word + DidYouMean(word, names));
}

std::string HexWord(std::uint32_t word) { return "0x" + Hex(word, 1); }

Json PartDocument(const ErrorWord& part) {
  return {{"name", part.name},
          {"value", HexWord(part.value)},
          {"words", part.words},
          {"when", std::string(part.how) + ": " + part.when},
          {"remedy", part.remedy}};
}

Json Explanation(std::uint32_t word) {
  Json parts = Json::array();
  for (const ErrorWord& part : PartsOf(word)) parts.push_back(PartDocument(part));
  return {{"word", HexWord(word)}, {"words", ErrorWords(word)}, {"parts", std::move(parts)}};
}

void ShowExplanation(const Json& one) {
  const auto text = [](const Json& value) { return value.get<std::string>(); };
  PrintLine(stdout, text(one["word"]) + "  " + text(one["words"]));
  for (const Json& part : one["parts"]) {
    PrintLine(stdout, "  " + text(part["name"]) + " " + text(part["value"]));
    for (const char* key : {"when", "remedy"}) PrintLine(stdout, "    " + text(part[key]));
  }
}

struct Error {
  std::vector<std::string> words;

  void Take(Words& taken) {
    taken.Text("WORD", words, "As a message shows it (0x20202), in decimal digits, or a name of api/types.h");
  }

  [[nodiscard]] Json Run(const Request& request) const {
    Json document = request.Document();
    Json& errors = document["errors"] = Json::array();
    for (const std::string& word : words) errors.push_back(Explanation(ValueOf(word)));
    if (request.json) return document;
    for (const Json& one : errors) ShowExplanation(one);
    FlushOutput();
    return {};
  }
};

}  // namespace

void AddError(Program& program) { program.Add<Error>("error", "What an error word means, and what to do"); }

}  // namespace tavlyn::ctl
