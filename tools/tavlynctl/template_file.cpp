#include "tools/tavlynctl/template_file.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string_view>

#include "api.h"
#include "core/text.h"
#include "tools/nearest.h"
#include "tools/tavlynctl/fields.h"
#include "tools/tavlynctl/file_problem.h"

namespace tavlyn::ctl {
namespace {

// The library takes longer lines for several.
constexpr int kLineRoom = 128;
constexpr const char* kHwgMark = "iEndOfHwgFile";
constexpr const char* kIniMark = "iEndOfIniFile";
// Stands in what a library has written; a file written by hand may hold a few lines only.
constexpr const char* kWrittenMark = ":Library Version:";
constexpr const char* kCut = "ends in the middle of configuration ";
constexpr const char* kHint = "; without its line :Library Version: it may hold as little as you like";
constexpr const char* kNextMark = "##NEXTCONFIG##";

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

bool SameLetter(char a, char b) { return AsciiLower(a) == AsciiLower(b); }

bool Holds(std::string_view text, std::string_view part) { return text.find(part) != std::string_view::npos; }

// The name among Settings, and whether it is a flag: for a reader every value but 0 is then one.
struct Keyword {
  bool known = false;
  std::string name;  // empty for what no reader keeps
  bool flag = false;
};

Keyword KeywordOf(std::string_view word) {
  for (const SavedOption& option : kSavedOptions) {
    if (SameText(word, option.keyword)) return {true, option.keyword, true};
  }
  Keyword found;
  for (const Field& field : kFields) {
    if (!SameText(word, field.keyword)) continue;
    found.known = true;
    if (field.save == Save::kUnsaved) continue;
    return {true, FullName(field), field.save == Save::kFlag};
  }
  return found;
}

std::string Suggested(std::string_view word) {
  std::vector<std::string> names;
  names.reserve(std::size(kSavedOptions) + std::size(kFields));
  for (const SavedOption& option : kSavedOptions) names.emplace_back(option.keyword);
  for (const Field& field : kFields) {
    if (field.save != Save::kUnsaved) names.emplace_back(field.keyword);
  }
  return DidYouMean(word, names);
}

class Parser {
 public:
  // A line, or the next piece of one.
  void Take(const std::string& piece) {
    if (begins_) ++number_;
    begins_ = piece.ends_with('\n');
    written_ = written_ || piece.starts_with(kWrittenMark);
    std::string_view line = Content(piece);
    if (line.empty()) return;
    line = line.substr(0, line.find_last_not_of("\r\n") + 1);
    if (line.starts_with(kNextMark)) return Close();
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
      case State::kCard: TakeCard(std::string(line)); break;
    }
  }

  Template Result() {
    const bool more = closed_ || now_.contains(kCardTypeName);
    const bool cut = state_ == State::kSepBytes || (written_ && state_ == State::kEntries);
    if (!now_.empty()) {
      if (more || cut) Complain(kCut);
      if (written_ && state_ == State::kEntries) told_.problem += kHint;
      told_.configurations.push_back(std::move(now_));
    }
    if (told_.configurations.empty()) told_.problem = "holds no configuration";
    return std::move(told_);
  }

 private:
  enum class State { kEntries, kSepBytes, kCard };

  // The library writes the card lines of a configuration that it could not read, and nothing else of it.
  void Close() {
    if (!entries_) Complain("lacks configuration ");
    if (state_ != State::kCard) Complain(kCut);
    told_.configurations.push_back(std::move(now_));
    now_ = Json::object();
    entries_ = false;
    closed_ = true;
    state_ = State::kEntries;
  }

  void Complain(const char* what) {
    if (told_.problem.empty()) told_.problem = what + std::to_string(told_.configurations.size());
  }

  void Ignore(const std::string& why) {
    told_.ignored.push_back("line " + std::to_string(number_) + ": " + why);
  }

  void TakeEntry(std::string_view line) {
    Tokens tokens(line);
    const std::string word(tokens.Next(kEntryDelimiters));
    if (word.starts_with(kHwgMark)) return;
    if (word == "CardType:" || word == "CardPriority:")
      return Ignore(word + " counts only after separator data");
    const Keyword keyword = KeywordOf(word);
    std::uint16_t value = 0;
    if (!keyword.known) return Ignore("unknown name " + word + Suggested(word));
    if (!Scan(tokens.Next(kEntryDelimiters), "%hu", value)) return Ignore(word + " has no number");
    entries_ = true;
    if (keyword.name.empty()) return Ignore("no reader keeps " + word);
    now_[keyword.name] =
        keyword.flag ? static_cast<std::int16_t>(value != 0) : static_cast<std::int16_t>(value);
  }

  void TakeSepBytes(std::string_view line) {
    Tokens tokens(line);
    for (auto token = tokens.Next(kDataDelimiters); !token.empty(); token = tokens.Next(kDataDelimiters)) {
      unsigned byte = 0;
      if (token.front() == kCommentMark) return;
      if (sepBytes_ >= kSepFldBytes) return;
      if (!Scan(token, "%x", byte)) return Ignore("the separator data holds something that is not a byte");
      now_[SepByteName(sepBytes_++)] = Hex(byte & 0xFFU, 2);
      entries_ = true;
    }
  }

  // A card type without a priority of its own has a low one.
  void TakeCard(const std::string& line) {
    long type = 0;
    int priority = 0;
    if (std::sscanf(line.c_str(), "CardType: %ld", &type) == 1) {
      now_[kCardTypeName] = Hex(static_cast<unsigned>(type) & 0xFFFFU, 4);
      now_[kCardPriorityName] = PriorityText(false);
    } else if (std::sscanf(line.c_str(), "CardPriority: %d", &priority) == 1) {
      now_[kCardPriorityName] = PriorityText(priority != 0);
    } else if (!line.starts_with(kHwgMark)) {
      Ignore("only the card type and its priority count after separator data");
    }
  }

  Template told_;
  Json now_ = Json::object();
  State state_ = State::kEntries;
  std::size_t sepBytes_ = 0;
  int number_ = 0;
  bool begins_ = true;    // the next piece begins a line
  bool entries_ = false;  // of the configuration that is being read
  bool closed_ = false;   // a configuration before it
  bool written_ = false;
};

}  // namespace

Template ParseTemplate(const std::string& path) {
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

Template ReadTemplate(const std::string& path) {
  Template file = ParseTemplate(path);
  if (!file.problem.empty()) throw Failure(kBadFile, path + " " + file.problem);
  return file;
}

bool HasText(const std::string& path, std::string_view text) {
  bool found = false;
  EachLine(path, [&](const std::string& line) {
    found =
        found || std::search(line.begin(), line.end(), text.begin(), text.end(), SameLetter) != line.end();
  });
  return found;
}

bool HasTrailer(const std::string& path, Trailer trailer) {
  return HasText(path, trailer == Trailer::kHwg ? kHwgMark : kIniMark);
}

void CheckTrailer(const std::string& path, Trailer trailer) {
  const bool there = HasTrailer(path, trailer);
  if (CheckTamperedFile(path.c_str(), trailer == Trailer::kHwg ? 0 : 1) == 1) return;
  throw Failure(kBadFile, path + (there ? " was changed since it was written" : " has no integrity trailer"));
}

}  // namespace tavlyn::ctl
