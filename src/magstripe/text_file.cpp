#include <array>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "core/state.h"
#include "core/text.h"
#include "core/version.h"
#include "magstripe/product.h"

namespace tavlyn::magstripe {
namespace {

constexpr const char* kMark = "//";
constexpr const char* kTitle = "--- Sorbane Configuration Template File ---";
constexpr const char* kEnd = "//##END##";

// A longer line is taken in pieces, and the title must stand within as much.
constexpr std::size_t kLineRoom = 257;
using LineText = std::array<char, kLineRoom>;

template <typename Owner>
struct SavedByte {
  const char* name;
  std::uint8_t Owner::*member;
  bool flag;
  const char* comment;
};

constexpr SavedByte<tsSorbaneCfg> kSystemBytes[] = {
#define SORBANE_SYSTEM(name, flag, comment) {#name, &tsSorbaneCfg::name, flag, comment},
#include "magstripe/cfg_file.inc"
};
constexpr SavedByte<tsSorbaneField> kFieldBytes[] = {
#define SORBANE_FIELD(name, flag, comment) {#name, &tsSorbaneField::name, flag, comment},
#include "magstripe/cfg_file.inc"
};
constexpr const char* kLuidComment = "// Logical Unit ID";
constexpr const char* kColorComment = "// 0=Off 1=Red 2=Green 3=Amber";
constexpr const char* kKeyComment = "// USB [Even]=Scancode [Odd]=ShiftModifier; ASCII [n]=ASCII Char";
constexpr const char* kTimeComment = "// 4MS units 4=16ms";

// One line of the file: a byte or a word of the mirror.
struct Setting {
  std::array<char, 32> key;
  std::size_t keyLength;
  std::uint8_t* byte;
  std::uint16_t* word;
  bool flag;
  const char* comment;
};
constexpr std::size_t kSettings =
    1 + std::size(kSystemBytes) + kLeds + kUserFields * (std::size(kFieldBytes) + kFieldKeys) + 2;
static_assert(kSettings == 309);

// All lines in the order of the file.
class Settings {
 public:
  explicit Settings(tsDevEntry& entry) {
    tsSorbaneCfg& cfg = entry.SorbaneBlock.Cfg;
    AddWord("LUID", entry.LUID, kLuidComment);
    for (const auto& saved : kSystemBytes)
      Add(&(cfg.*saved.member), saved.flag, saved.comment, "%s", saved.name);
    for (unsigned led = 0; led < kLeds; ++led)
      Add(&cfg.LedColor[led], false, kColorComment, "LedColor[%u]", led);
    for (unsigned field = 0; field < kUserFields; ++field) AddField(field, cfg.UserField[field]);
    AddWord("KeyPressTime", cfg.KeyPressTime, kTimeComment);
    AddWord("KeyReleaseTime", cfg.KeyReleaseTime, kTimeComment);
  }

  // Null for a key that is none.
  [[nodiscard]] const Setting* Find(std::string_view key) const {
    for (const Setting& setting : *this) {
      if (key == std::string_view(setting.key.data(), setting.keyLength)) return &setting;
    }
    return nullptr;
  }
  [[nodiscard]] const Setting* begin() const { return settings_.data(); }
  [[nodiscard]] const Setting* end() const { return settings_.data() + used_; }

 private:
  template <typename... Arguments>
  void Add(std::uint8_t* byte, bool flag, const char* comment, const char* format, Arguments... arguments) {
    Setting& setting = settings_[used_++];
    setting.byte = byte;
    setting.flag = flag;
    setting.comment = comment;
    std::snprintf(setting.key.data(), setting.key.size(), format, arguments...);
    setting.keyLength = std::strlen(setting.key.data());
  }

  void AddWord(const char* key, std::uint16_t& word, const char* comment) {
    settings_[used_].word = &word;
    Add(nullptr, false, comment, "%s", key);
  }

  void AddField(unsigned number, tsSorbaneField& field) {
    for (const auto& saved : kFieldBytes)
      Add(&(field.*saved.member), saved.flag, saved.comment, "UserField[%u].%s", number, saved.name);
    for (unsigned key = 0; key < kFieldKeys; ++key)
      Add(&field.Keybyte[key], false, kKeyComment, "UserField[%u].Keybyte[%u]", number, key);
  }

  std::array<Setting, kSettings> settings_{};
  std::size_t used_ = 0;
};

void PrintLine(std::FILE* file, const char* setting, const char* comment) {
  std::fprintf(file, "%-31s %s\n", setting, comment);
}

long ValueOf(const Setting& setting, const tsDevEntry& entry) {
  if (setting.byte != nullptr) return *setting.byte;
  // This word alone shows its sign.
  return setting.word == &entry.LUID ? static_cast<std::int16_t>(entry.LUID) : long{*setting.word};
}

void Store(const Setting& setting, long number) {
  if (setting.word != nullptr) {
    *setting.word = static_cast<std::uint16_t>(number);
  } else {
    *setting.byte = setting.flag ? std::uint8_t{number != 0} : static_cast<std::uint8_t>(number);
  }
}

// A key, its colon, a number with or without blanks before it. Any other line is passed over.
void TakeLine(std::string_view line, const Settings& settings) {
  const std::size_t colon = line.find(':');
  if (colon == std::string_view::npos) return;
  const Setting* setting = settings.Find(line.substr(0, colon));
  long number = 0;
  if (setting != nullptr && Scan(line.substr(colon + 1), "%ld", number)) Store(*setting, number);
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
  std::fprintf(file.get(), "%sLibrary Version%c %d.%d.%d \n", kMark, kInformationMark, kVersionMajor,
               kVersionMinor, kVersionBuild);
  LineText text{};
  tsDevEntry& entry = EntryOfActDev();
  for (const Setting& setting : Settings(entry)) {
    std::snprintf(text.data(), text.size(), "%s: %ld", setting.key.data(), ValueOf(setting, entry));
    PrintLine(file.get(), text.data(), setting.comment);
  }
  std::snprintf(text.data(), text.size(), "%s: ", kEnd);
  PrintLine(file.get(), text.data(), "");
  return 1;
}

std::uint32_t LoadFile(const char* path) {
  const File file = OpenFile(path, "rt");
  if (file == nullptr || !HasTitle(file.get())) return 0;
  std::rewind(file.get());
  const Settings settings(EntryOfActDev());
  Lines<kLineRoom> lines(file.get());
  std::string_view line;
  // The mark of the end is deliberately not looked for.
  while (lines.Next(line)) TakeLine(line, settings);
  return 1;
}

}  // namespace tavlyn::magstripe
