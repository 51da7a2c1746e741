#include "tools/tavlynctl/config/template_file.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <optional>
#include <string_view>

#include "api.h"
#include "core/text.h"
#include "files/template_parse.h"
#include "tools/nearest.h"
#include "tools/tavlynctl/config/fields.h"
#include "tools/tavlynctl/files.h"
#include "tools/tavlynctl/hex.h"

namespace tavlyn::ctl {
namespace {

constexpr const char* kCut = "ends in the middle of configuration ";
constexpr const char* kHint = "; without its line :Library Version: it may hold as little as you like";

void EachLine(const std::string& path, const std::function<void(const std::string&)>& take) {
  const File file(std::fopen(path.c_str(), "rb"));
  char line[kTemplateLineRoom];
  if (file == nullptr || std::fgets(line, sizeof line, file.get()) == nullptr) {
    throw NothingIn(path);
  }
  do {
    take(line);
  } while (std::fgets(line, sizeof line, file.get()) != nullptr);
}

bool SameLetter(char a, char b) { return AsciiLower(a) == AsciiLower(b); }

// The name in Settings; empty for what no reader has.
std::string NameOf(const TemplateEntry& entry) {
  if (entry.option != nullptr) return entry.option->keyword;
  return entry.field->save == Save::kUnsaved ? "" : FullName(*entry.field);
}

// To a reader every flag value other than 0 is 1.
bool IsFlag(const TemplateEntry& entry) {
  return entry.option != nullptr || entry.field->save == Save::kFlag;
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

std::optional<long> NumberAfter(std::string_view word, std::string_view line) {
  long number = 0;
  if (!line.starts_with(word) || !Scan(line.substr(word.size()), "%ld", number)) return std::nullopt;
  return number;
}

class Parser {
 public:
  // A line, or the next piece of one.
  void Take(const std::string& piece) {
    if (begins_) ++number_;
    begins_ = piece.ends_with('\n');
    written_ = written_ || piece.starts_with(kInformationMark + std::string(kLibraryVersion));
    const TemplateLine line = ParseLine(piece, state_ == State::kSepBytes);
    if (line.text.starts_with(kNextConfigMark)) return Close();
    if (line.kind == LineKind::kSilent) return;
    if (state_ == State::kCard) return TakeCard(line.text);
    switch (line.kind) {
      case LineKind::kSilent: break;
      case LineKind::kEntry: TakeEntry(ParseEntry(line.text)); break;
      case LineKind::kSepBegin: state_ = State::kSepBytes; break;
      case LineKind::kSepBytes: TakeSepBytes(ParseSepBytes(line.text)); break;
      case LineKind::kSepEnd: state_ = State::kCard; break;
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

  // Of a configuration that it could not read, the library writes only the card lines.
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

  void TakeEntry(const TemplateEntry& entry) {
    const std::string word(entry.key);
    if (word.starts_with(kHwgSumName)) return;
    if (word == kCardTypeWord || word == kCardPriorityWord)
      return Ignore(word + " counts only after separator data");
    if (entry.option == nullptr && entry.field == nullptr)
      return Ignore("unknown name " + word + Suggested(word));
    if (!entry.number) return Ignore(word + " has no number");
    entries_ = true;
    const std::string name = NameOf(entry);
    if (name.empty()) return Ignore("no reader keeps " + word);
    now_[name] = IsFlag(entry) ? std::int16_t{*entry.number != 0} : static_cast<std::int16_t>(*entry.number);
  }

  void TakeSepBytes(const SepBytes& line) {
    for (std::size_t at = 0; at < line.count && sepBytes_ < kSepFldBytes; ++at) {
      now_[SepByteName(sepBytes_++)] = Hex(line.bytes[at], 2);
      entries_ = true;
    }
    if (line.stray.empty() || line.stray.starts_with(kCommentMark) || sepBytes_ == kSepFldBytes) return;
    Ignore("the separator data holds something that is not a byte");
  }

  // A card type without a priority has a low one.
  void TakeCard(std::string_view line) {
    if (const auto type = NumberAfter(kCardTypeWord, line)) {
      now_[kCardTypeName] = Hex(static_cast<unsigned>(*type) & 0xFFFFU, 4);
      now_[kCardPriorityName] = PriorityText(false);
    } else if (const auto priority = NumberAfter(kCardPriorityWord, line)) {
      now_[kCardPriorityName] = PriorityText(static_cast<int>(*priority) != 0);
    } else if (!line.starts_with(kHwgSumName)) {
      Ignore("only the card type and its priority count after separator data");
    }
  }

  Template told_;
  Json now_ = Json::object();
  State state_ = State::kEntries;
  std::size_t sepBytes_ = 0;
  int number_ = 0;
  bool begins_ = true;    // the next piece is the beginning of a line
  bool entries_ = false;  // the configuration being read has some
  bool closed_ = false;   // a configuration has ended
  bool written_ = false;  // by the library; a file written by hand may be incomplete
};

}  // namespace

Template ParseTemplate(const std::string& path) {
  Parser parser;
  std::string head;
  EachLine(path, [&](const std::string& line) {
    if (head.size() < kTitleWithin) head += line;
    parser.Take(line);
  });
  if (!HasTitle(head)) throw Failure(kBadFile, path + " is not a configuration file");
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
  return HasText(path, trailer == Trailer::kHwg ? kHwgSumName : kIniSumName);
}

void CheckTrailer(const std::string& path, Trailer trailer) {
  const bool there = HasTrailer(path, trailer);
  if (CheckTamperedFile(path.c_str(), trailer == Trailer::kHwg ? 0 : 1) == 1) return;
  throw Failure(kBadFile, path + (there ? " was changed since it was written" : " has no integrity trailer"));
}

}  // namespace tavlyn::ctl
