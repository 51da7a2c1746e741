#include "tools/tavlynctl/template_file.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string_view>

#include "api.h"
#include "core/ascii_case.h"
#include "core/text_file.h"
#include "tools/tavlynctl/fields.h"
#include "tools/tavlynctl/file_problem.h"

namespace tavlyn::ctl {
namespace {

// The library takes longer lines for several.
constexpr int kLineRoom = 128;

void EachLine(const std::string& path, const std::function<void(const std::string&)>& take) {
  const File file(std::fopen(path.c_str(), "rb"));
  char line[kLineRoom];
  if (file == nullptr || std::fgets(line, sizeof line, file.get()) == nullptr) {
    throw NothingIn(path);
  }
  do {
    take(line);
  } while (std::fgets(line, sizeof line, file.get()) != nullptr);
}

bool Holds(const std::string& text, const char* part) { return text.find(part) != std::string::npos; }

std::string NextToken(std::string_view& rest, const char* delimiters) {
  rest.remove_prefix(std::min(rest.find_first_not_of(delimiters), rest.size()));
  const std::string_view token = rest.substr(0, rest.find_first_of(delimiters));
  rest.remove_prefix(token.size());
  return std::string(token);
}

// The name among Settings, and whether it is a flag: for a reader every value but 0 is then one.
struct Keyword {
  std::string name;
  bool flag = false;
};

Keyword KeywordOf(const std::string& word) {
  for (const SavedOption& option : kSavedOptions) {
    if (SameText(word, option.keyword)) return {option.keyword, true};
  }
  for (const SavedField& saved : kSavedFields) {
    if (saved.save == Save::kUnsaved || !SameText(word, saved.keyword)) continue;
    return {FullName(std::string_view(kRecordNames[saved.field.record]).substr(2), saved.keyword),
            saved.save == Save::kFlag};
  }
  return {};
}

class Parser {
 public:
  void Take(const std::string& whole) {
    const std::size_t first = whole.find_first_not_of(" \t\r\n\f\v");
    if (first == std::string::npos || whole[first] == kCommentMark || whole[first] == kInformationMark)
      return;
    const std::string line = whole.substr(first);
    if (line.starts_with("##NEXTCONFIG##")) {
      all_.emplace_back(Json::object());
      state_ = State::kEntries;
      return;
    }
    const bool named = Holds(line, kSepBlockName);
    switch (state_) {
      case State::kEntries:
        if (named && Holds(line, "BEGIN")) {
          state_ = State::kSepBytes;
          sepBytes_ = 0;
        } else {
          TakeEntry(line);
        }
        break;
      case State::kSepBytes:
        if (named && Holds(line, "END")) {
          state_ = State::kCard;
        } else {
          TakeSepBytes(line);
        }
        break;
      case State::kCard: TakeCard(line); break;
    }
  }

  std::vector<Json> Result() {
    while (!all_.empty() && all_.back().empty()) all_.pop_back();
    return std::move(all_);
  }

 private:
  enum class State { kEntries, kSepBytes, kCard };

  void TakeEntry(std::string_view line) {
    constexpr const char* kDelimiters = ", =\t";
    const Keyword keyword = KeywordOf(NextToken(line, kDelimiters));
    std::uint16_t value = 0;
    if (keyword.name.empty() || std::sscanf(NextToken(line, kDelimiters).c_str(), "%hu", &value) != 1) return;
    all_.back()[keyword.name] =
        keyword.flag ? static_cast<std::int16_t>(value != 0) : static_cast<std::int16_t>(value);
  }

  void TakeSepBytes(std::string_view line) {
    for (std::string token = NextToken(line, ",. \t"); !token.empty(); token = NextToken(line, ",. \t")) {
      unsigned byte = 0;
      if (sepBytes_ >= kSepFldBytes || std::sscanf(token.c_str(), "%x", &byte) != 1) return;
      all_.back()[SepByteName(sepBytes_++)] = Hex(byte & 0xFFU, 2);
    }
  }

  // A card type without a priority of its own has a low one.
  void TakeCard(const std::string& line) {
    long type = 0;
    int priority = 0;
    if (std::sscanf(line.c_str(), "CardType: %ld", &type) == 1) {
      all_.back()[kCardTypeName] = Hex(static_cast<unsigned>(type) & 0xFFFFU, 4);
      all_.back()[kCardPriorityName] = PriorityText(false);
    } else if (std::sscanf(line.c_str(), "CardPriority: %d", &priority) == 1) {
      all_.back()[kCardPriorityName] = PriorityText(priority != 0);
    }
  }

  std::vector<Json> all_{Json::object()};
  State state_ = State::kEntries;
  std::size_t sepBytes_ = 0;
};

}  // namespace

std::vector<Json> ReadTemplate(const std::string& path) {
  Parser parser;
  std::string head;
  EachLine(path, [&](const std::string& line) {
    if (head.size() < kLineRoom) head += line;
    parser.Take(line);
  });
  if (!Holds(head.substr(0, kLineRoom), kTemplateTitle)) {
    throw Failure(kBadFile, path + " is no configuration file");
  }
  return parser.Result();
}

bool HasTrailer(const std::string& path, Trailer trailer) {
  const std::string_view mark = trailer == Trailer::kHwg ? "iEndOfHwgFile" : "iEndOfIniFile";
  bool found = false;
  EachLine(path, [&](const std::string& line) {
    found = found || !std::ranges::search(line, mark, {}, AsciiLower, AsciiLower).empty();
  });
  return found;
}

void CheckTrailer(const std::string& path, Trailer trailer) {
  const bool there = HasTrailer(path, trailer);
  if (CheckTamperedFile(path.c_str(), trailer == Trailer::kHwg ? 0 : 1) == 1) return;
  throw Failure(kBadFile, path + (there ? " was changed since it was written" : " has no integrity trailer"));
}

}  // namespace tavlyn::ctl
