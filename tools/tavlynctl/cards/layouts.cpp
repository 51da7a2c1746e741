#include "tools/tavlynctl/cards/layouts.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <iterator>
#include <sstream>
#include <string_view>

#include "tools/path_names.h"
#include "tools/tavlynctl/cards/config_folder.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {
namespace {

constexpr char kBuiltIn[] =
#include "wiegand-layouts.inc"
    ;

constexpr const char* kOwnLayoutFile = "wiegand-layouts.txt";

// A line; every problem is reported with where it stands.
class LayoutLine {
 public:
  LayoutLine(std::string text, std::string place) : text_(std::move(text)), place_(std::move(place)) {}

  [[nodiscard]] Layout Parsed() const;

 private:
  using Words = std::vector<std::string>;

  [[noreturn]] void Refuse(const std::string& what) const { throw Failure(kBadFile, place_ + ": " + what); }
  [[nodiscard]] int Number(std::string_view word, int most) const;
  [[nodiscard]] BitSpan Span(const std::string& word, int bits) const;
  void TakePart(const std::string& part, Layout& layout) const;
  void TakeParity(const Words& words, Layout& layout) const;
  void TakeNumber(const Words& words, Layout& layout) const;

  std::string text_;
  std::string place_;
};

std::string TrimmedLine(const std::string& line) {
  constexpr const char* kBlanks = " \t\r";
  const std::size_t first = line.find_first_not_of(kBlanks);
  if (first == std::string::npos) return {};
  return line.substr(first, line.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string> PiecesOf(const std::string& text, char between) {
  std::vector<std::string> pieces;
  std::istringstream stream(text);
  for (std::string piece; std::getline(stream, piece, between);) pieces.push_back(piece);
  return pieces;
}

std::vector<std::string> LayoutWords(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

int LayoutLine::Number(std::string_view word, int most) const {
  int number = 0;
  const char* end = word.data() + word.size();
  const auto [stop, error] = std::from_chars(word.data(), end, number);
  if (error == std::errc() && stop == end && number >= 1 && number <= most) return number;
  Refuse("\"" + std::string(word) + "\" is not a number from 1 to " + std::to_string(most));
}

BitSpan LayoutLine::Span(const std::string& word, int bits) const {
  const std::size_t dash = word.find('-');
  const int first = Number(std::string_view(word).substr(0, dash), bits);
  if (dash == std::string::npos) return {first, first};
  const int last = Number(std::string_view(word).substr(dash + 1), bits);
  if (first > last) Refuse("\"" + word + "\" ends before it begins");
  return {first, last};
}

void LayoutLine::TakeParity(const Words& words, Layout& layout) const {
  if (words.size() < 4 || words[2] != "over") Refuse("parity is written \"" + words[0] + " BIT over BITS\"");
  Layout::Parity parity{Number(words[1], layout.bits), words[0] == "odd", {}};
  for (std::size_t at = 3; at < words.size(); ++at) {
    const BitSpan span = Span(words[at], layout.bits);
    if (span.first <= parity.bit && parity.bit <= span.last) {
      Refuse("bit " + words[1] + " is among the bits \"" + words[at] + "\" that it watches over");
    }
    parity.over.push_back(span);
  }
  layout.parity.push_back(std::move(parity));
}

void LayoutLine::TakeNumber(const Words& words, Layout& layout) const {
  const std::string& name = words[0];
  if (words.size() != 2 || name.find_first_not_of("abcdefghijklmnopqrstuvwxyz_") != std::string::npos) {
    Refuse("\"" + name + "\" does not begin a field, as in \"card 10-25\", or a parity bit");
  }
  if (std::ranges::find(layout.numbers, name, &Layout::Number::name) != layout.numbers.end()) {
    Refuse("there are two fields \"" + name + "\"");
  }
  const BitSpan bits = Span(words[1], layout.bits);
  if (bits.last - bits.first >= kMostNumberBits) {
    Refuse("\"" + name + "\" has more than " + std::to_string(kMostNumberBits) + " bits");
  }
  layout.numbers.push_back({name, bits});
}

void LayoutLine::TakePart(const std::string& part, Layout& layout) const {
  const Words words = LayoutWords(part);
  if (words.empty()) Refuse("a part is empty");
  if (layout.bits == 0) {
    if (words.size() != 2 || words[1] != "bits") Refuse("after the name comes the length, as in \"26 bits\"");
    layout.bits = Number(words[0], kMostCardBits);
  } else if (words[0] == "even" || words[0] == "odd") {
    TakeParity(words, layout);
  } else {
    TakeNumber(words, layout);
  }
}

Layout LayoutLine::Parsed() const {
  const std::size_t colon = text_.find(':');
  if (colon == std::string::npos || colon == 0) Refuse("it does not begin with a name and a colon");
  Layout layout;
  layout.name = TrimmedLine(text_.substr(0, colon));
  for (const std::string& part : PiecesOf(text_.substr(colon + 1), ',')) TakePart(part, layout);
  if (layout.numbers.empty()) Refuse("the layout has no field");
  return layout;
}

// Empty if there is none.
std::string OwnLayoutFile() {
  const std::string folder = ConfigFolder();
  std::error_code unknown;
  const std::filesystem::path file = PathOf(folder) / kOwnLayoutFile;
  return !folder.empty() && std::filesystem::exists(file, unknown) ? NameOfPath(file) : std::string();
}

}  // namespace

std::vector<Layout> ParseLayouts(const std::string& text, const std::string& file) {
  std::vector<Layout> layouts;
  int number = 0;
  for (const std::string& whole : PiecesOf(text, '\n')) {
    ++number;
    const std::string line = TrimmedLine(whole);
    if (line.empty() || line.front() == '#') continue;
    layouts.push_back(LayoutLine(line, file + ", line " + std::to_string(number)).Parsed());
  }
  return layouts;
}

std::vector<Layout> BuiltInLayouts() { return ParseLayouts(kBuiltIn, "built in"); }

std::vector<Layout> KnownLayouts(const std::string& file) {
  std::vector<Layout> layouts = BuiltInLayouts();
  const std::string own = file.empty() ? OwnLayoutFile() : file;
  if (own.empty()) return layouts;
  RequireFile(own);
  const std::string text = ContentsOf(own);
  if (text.empty()) throw NothingIn(own);
  std::ranges::move(ParseLayouts(text, own), std::back_inserter(layouts));
  return layouts;
}

}  // namespace tavlyn::ctl
