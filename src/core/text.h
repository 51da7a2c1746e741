// Text files and the lines and words in them; texts compared without regard to case; paths that are passed
// character by character.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <optional>
#include <string_view>

#include "core/wipe.h"
#include "platform/allocated.h"
#include "platform/files.h"

namespace tavlyn {

// ASCII only, whatever the program's locale is.
constexpr char AsciiLower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

constexpr bool SameText(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, AsciiLower, AsciiLower);
}

// These begin lines that programs ignore: a comment, and information for people.
inline constexpr char kCommentMark = '/';
inline constexpr char kInformationMark = ':';

// What is read and written may be keys, so it passes through the file's own buffer, which is wiped.
struct CloseFile {
  struct Room : Wiped<std::array<char, 4096>>, platform::Allocated {};
  void operator()(std::FILE* file) const { std::fclose(file); }

  std::unique_ptr<Room> room;
};
using File = std::unique_ptr<std::FILE, CloseFile>;

// Null when the file cannot be opened, for a folder, and without a path.
File OpenFile(const char* path, const char* mode);
// For a file that may hold keys: starts it afresh; a new file is accessible to its owner alone.
File CreateKeyFile(const char* path);

// Writes the first three lines: title, library version, the device's firmware version.
inline constexpr const char* kLibraryVersion = "Library Version:";
void WriteHeading(std::FILE* file, const char* title);

// Write the line above the entries of a record, and one entry.
void WriteSection(std::FILE* file, const char* name);
void WriteEntry(std::FILE* file, const char* keyword, std::uint16_t value, const char* comment);

// A path may name a device that never ends. The files meant here are a few kilobytes, so whatever is not a
// regular file is read up to this many pieces.
inline constexpr std::uint64_t kMostPieces = 1U << 20;

// Reads a file line by line, lines that are longer than the room in pieces; each up to its first NUL.
template <std::size_t kRoom>
class Lines {
 public:
  explicit Lines(std::FILE* file)
      : Lines(file, platform::IsRegularFile(file) ? std::numeric_limits<std::uint64_t>::max() : kMostPieces) {
  }
  Lines(std::FILE* file, std::uint64_t most) : file_(file), left_(most) {}

  bool Next(std::string_view& line) {
    if (left_-- == 0 || std::fgets(room_.data(), static_cast<int>(kRoom), file_) == nullptr) return false;
    line = room_.data();
    return true;
  }
  [[nodiscard]] bool AtEnd() const { return std::feof(file_) != 0; }

 private:
  std::FILE* file_;
  Wiped<std::array<char, kRoom>> room_{};
  std::uint64_t left_;
};

// What separates a key, its value and what follows them; and what separates bytes in hexadecimal.
inline constexpr const char* kEntryDelimiters = ", =\t";
inline constexpr const char* kDataDelimiters = ",. \t";

// Like strtok, but keeps its own position and drops the delimiter after a token. An empty token means the
// end.
class Tokens {
 public:
  explicit Tokens(std::string_view text) : rest_(text) {}

  std::string_view Next(const char* delimiters) {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(delimiters), rest_.size()));
    const std::string_view token = rest_.substr(0, rest_.find_first_of(delimiters));
    rest_.remove_prefix(std::min(token.size() + 1, rest_.size()));
    return token;
  }

 private:
  std::string_view rest_;
};

// Parses a token by one conversion of scanf. Tokens come from lines that are shorter than the buffer.
template <typename Number>
bool Scan(std::string_view token, const char* conversion, Number& number) {
  std::array<char, 384> text{};
  token.copy(text.data(), text.size() - 1);
  return std::sscanf(text.data(), conversion, &number) == 1;
}

// A line from its first printable character on; empty for a line that programs ignore.
inline std::string_view Content(std::string_view line) {
  const auto printable = std::ranges::find_if(line, [](char c) { return static_cast<signed char>(c) > ' '; });
  line.remove_prefix(static_cast<std::size_t>(printable - line.begin()));
  const bool forPeople = line.starts_with(kCommentMark) || line.starts_with(kInformationMark);
  return forPeople ? std::string_view() : line;
}

// "key = number" with whatever is between and after them.
struct Entry {
  std::string_view key;
  std::optional<std::uint16_t> number = {};
};
inline Entry EntryIn(std::string_view content) {
  Tokens tokens(content);
  Entry entry{.key = tokens.Next(kEntryDelimiters)};
  std::uint16_t number = 0;
  if (Scan(tokens.Next(kEntryDelimiters), "%hu", number)) entry.number = number;
  return entry;
}

inline bool Mentions(std::string_view text, std::string_view word) {
  return text.find(word) != std::string_view::npos;
}

// A path that is passed character by character, for callers that cannot pass a text.
using PathBuffer = std::array<char, 257>;

// Index 0 clears the buffer and stores, 1 to 254 store, 255 runs; any other index does nothing and returns 0.
inline std::uint32_t CollectPath(PathBuffer& path, std::int16_t index, std::uint8_t character,
                                 std::uint32_t (*run)(const char*)) {
  constexpr std::int16_t kRun = 255;
  if (index == kRun) return run(path.data());
  if (index < 0 || index > kRun) return 0;
  if (index == 0) path.fill('\0');
  path[static_cast<std::size_t>(index)] = static_cast<char>(character);
  return 1;
}

}  // namespace tavlyn
