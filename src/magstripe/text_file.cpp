#include "magstripe/text_file.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "core/state.h"
#include "core/text.h"
#include "core/version.h"
#include "magstripe/product.h"

namespace tavlyn::magstripe {
namespace {

// A longer line is read in pieces, and the title must come within as many bytes.
constexpr std::size_t kLineRoom = 257;
using LineText = std::array<char, kLineRoom>;

// Where a setting is in the mirror: a byte or a word of it.
class Place {
 public:
  Place(std::uint8_t& byte, Form form) : byte_(&byte), form_(form) {}
  Place(std::uint16_t& word, Form form) : word_(&word), form_(form) {}

  [[nodiscard]] long Value() const {
    if (byte_ != nullptr) return *byte_;
    return form_ == Form::kSigned ? static_cast<std::int16_t>(*word_) : long{*word_};
  }
  void Store(long number) const {
    if (word_ != nullptr) {
      *word_ = static_cast<std::uint16_t>(number);
    } else {
      *byte_ = form_ == Form::kFlag ? std::uint8_t{number != 0} : static_cast<std::uint8_t>(number);
    }
  }

 private:
  std::uint8_t* byte_ = nullptr;
  std::uint16_t* word_ = nullptr;
  Form form_;
};

// The places of the rows of kSettings.
static_assert(std::ranges::all_of(kSettings, [](const Setting& setting) {
  return setting.count <= kUserFields && setting.inners <= kFieldKeys;
}));
using PlaceOf = Place (*)(tsDevEntry& entry, Indices at);
constexpr PlaceOf kPlaces[] = {
#define SETTING(key, count, inners, place, form, comment)             \
  [](tsDevEntry& entry, Indices at) {                                 \
    [[maybe_unused]] tsSorbaneCfg& cfg = entry.SorbaneBlock.Cfg;      \
    [[maybe_unused]] tsSorbaneField& field = cfg.UserField[at.outer]; \
    return Place(place, Form::form);                                  \
  },
#include "magstripe/text_file.inc"
};

void PrintLine(std::FILE* file, const char* setting, const char* comment) {
  std::fprintf(file, "%-31s %s\n", setting, comment);
}

// Ignores a line that has no key of the table or no number.
void TakeLine(const Line& line, tsDevEntry& entry) {
  for (std::size_t row = 0; line.number && row < kSettings.size(); ++row) {
    if (const auto at = IndicesIn(kSettings[row], line.key)) kPlaces[row](entry, *at).Store(*line.number);
  }
}

bool HasTitle(std::FILE* file) {
  LineText start{};
  const std::size_t read = std::fread(start.data(), 1, start.size(), file);
  return std::string_view(start.data(), read).find(kTitle) != std::string_view::npos;
}

}  // namespace

std::uint32_t SaveFile(const char* path) {
  const File file = OpenFile(path, "wt");
  if (file == nullptr) return 0;
  std::fprintf(file.get(), "%s%s\n", kMark, kTitle);
  std::fprintf(file.get(), "%s%s %d.%d.%d \n", kMark, kLibraryVersion, kVersionMajor, kVersionMinor,
               kVersionBuild);
  LineText text{};
  tsDevEntry& entry = EntryOfActDev();
  ForEachKey([&](std::size_t row, Indices at) {
    std::snprintf(text.data(), text.size(), "%s%c %ld", KeyOf(kSettings[row], at).data(), kColon,
                  kPlaces[row](entry, at).Value());
    PrintLine(file.get(), text.data(), kSettings[row].comment);
  });
  std::snprintf(text.data(), text.size(), "%s%c ", kEnd, kColon);
  PrintLine(file.get(), text.data(), "");
  return 1;
}

std::uint32_t LoadFile(const char* path) {
  const File file = OpenFile(path, "rt");
  if (file == nullptr || !HasTitle(file.get())) return 0;
  std::rewind(file.get());
  Lines<kLineRoom> lines(file.get());
  std::string_view line;
  // The end mark is deliberately ignored.
  while (lines.Next(line)) TakeLine(LineOf(line), EntryOfActDev());
  return 1;
}

}  // namespace tavlyn::magstripe
