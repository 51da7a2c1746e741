#include "files/crc.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "core/text.h"
#include "files/template_words.h"

namespace tavlyn {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;

// Row r has what a byte becomes after r more bytes of zeros, so that as many bytes as there are rows are
// looked up independently of one another.
constexpr std::size_t kRows = 8;
using Rows = std::array<std::array<std::uint32_t, 256>, kRows>;

consteval Rows MakeRows() {
  Rows rows{};
  for (std::uint32_t index = 0; index < rows[0].size(); ++index) {
    std::uint32_t entry = index;
    for (int round = 0; round < 8; ++round) entry = (entry & 1) != 0 ? entry >> 1 ^ kPolynomial : entry >> 1;
    rows[0][index] = entry;
  }
  for (std::size_t row = 1; row < kRows; ++row) {
    for (std::size_t index = 0; index < rows[0].size(); ++index) {
      const std::uint32_t entry = rows[row - 1][index];
      rows[row][index] = entry >> 8 ^ rows[0][entry & 0xFF];
    }
  }
  return rows;
}

constexpr Rows kTable = MakeRows();

std::uint32_t Byte(std::string_view text, std::size_t at) { return static_cast<std::uint8_t>(text[at]); }

// A sum after as many more bytes as there are rows.
std::uint32_t After(std::uint32_t sum, std::string_view bytes) {
  std::uint32_t next = 0;
  for (std::size_t at = 0; at < kRows; ++at) {
    const std::uint32_t before = at < sizeof sum ? sum >> 8 * at & 0xFF : 0;
    next ^= kTable[kRows - 1 - at][Byte(bytes, at) ^ before];
  }
  return next;
}

constexpr int kNotBegun = 23;

constexpr std::size_t kLongLine = 4096;
constexpr std::size_t kShortLine = 128;

enum class Marker : std::uint8_t { kNone, kInsideSum, kOutsideSum };

Marker MarkerOf(std::string_view line, std::string_view lineEnd) {
  for (const std::string_view word : {"/--- ", kHwgSumName}) {
    if (!SameText(line.substr(0, word.size()), word)) return Marker::kNone;
    line.remove_prefix(word.size());
  }
  if (line == lineEnd) return Marker::kInsideSum;
  if (!line.starts_with(' ')) return Marker::kNone;
  return line.substr(1) == lineEnd ? Marker::kOutsideSum : Marker::kNone;
}

// The text after the equals signs of a value line; empty for any other line.
std::string_view HwgValue(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return {};
  std::string_view name = line.substr(0, equals);
  if (name.ends_with(' ')) name.remove_suffix(1);
  if (!SameText(name, kHwgSumName)) return {};
  line.remove_prefix(std::min(line.find_first_not_of('=', equals), line.size()));
  return line.substr(0, line.find('\n'));
}

using SumText = std::array<char, 9>;

SumText Hexadecimal(std::uint32_t sum) {
  SumText text;
  std::snprintf(text.data(), text.size(), "%08X", static_cast<unsigned>(sum));
  return text;
}

struct HwgTrailer {
  Marker marker = Marker::kNone;  // none: the file has no trailer
  std::string_view value;
};

// Adds what the sum covers up to a marker that a value line follows.
HwgTrailer FindHwgTrailer(Lines<kShortLine>& lines, CRC& sum) {
  std::string_view line;
  if (!lines.Next(line)) return {};
  // The first piece decides for the whole file.
  const std::string_view lineEnd = line.find("\r\n") != std::string_view::npos ? "\r\n" : "\n";
  do {
    const Marker marker = MarkerOf(line, lineEnd);
    if (lines.AtEnd()) continue;
    if (marker != Marker::kOutsideSum) sum.Add(line);
    if (marker == Marker::kNone) continue;
    // A line after a marker that is not a value line is skipped and not part of the sum.
    if (!lines.Next(line)) return {};
    const std::string_view value = HwgValue(line);
    if (!value.empty()) return {marker, value};
  } while (lines.Next(line));
  return {};
}

}  // namespace

void CRC::Begin() {
  running_ = 0xFFFFFFFF;
  begun_ = true;
}

void CRC::Add(std::string_view text) {
  if (!begun_) return;
  for (; text.size() >= kRows; text.remove_prefix(kRows)) running_ = After(running_, text);
  for (std::size_t at = 0; at < text.size(); ++at)
    running_ = running_ >> 8 ^ kTable[0][(running_ ^ Byte(text, at)) & 0xFF];
}

int CRC::Compute(std::uint32_t& result) {
  result = begun_ ? ~running_ : 0;
  return std::exchange(begun_, false) ? 0 : kNotBegun;
}

void CRC::AddWholeFile(const char* path) {
  const File file = OpenFile(path, "rb");
  Lines<kLongLine> lines(file.get());
  std::string_view line;
  while (file != nullptr && lines.Next(line)) Add(line);
}

int CRC::SumOfFile(const char* path, std::uint32_t& sum) {
  Begin();
  AddWholeFile(path);
  return Compute(sum);
}

int CRC::AppendHwgTrailer(const char* path) {
  std::uint32_t sum = 0;
  if (const int code = SumOfFile(path, sum); code != 0) return code;
  const File file = OpenFile(path, "a");
  if (file == nullptr) return 0;
  std::fprintf(file.get(), "%s=%s", kHwgSumName, Hexadecimal(sum).data());
  return 1;
}

int CRC::AppendSecureTrailer(const char* path) {
  std::uint32_t sum = 0;
  const int code = SumOfFile(path, sum);
  const File file = OpenFile(path, "a");
  if (file == nullptr) return code;
  std::fprintf(file.get(), "%c--- %s \n%s = %s", kCommentMark, kHwgSumName, kHwgSumName,
               Hexadecimal(sum).data());
  return code;
}

int CRC::CheckFile(const char* path, std::uint32_t kind) {
  return kind == 0 ? CheckHwgFile(path) : static_cast<int>(CheckIniFile(path) != 0);
}

int CRC::CheckHwgFile(const char* path) {
  const File file = OpenFile(path, "rb");
  if (file == nullptr) return 0;
  Lines<kShortLine> lines(file.get());
  Begin();
  auto [marker, value] = FindHwgTrailer(lines, *this);
  if (marker == Marker::kNone) return 0;
  // Whatever follows the equals sign there, a blank in an intact file.
  if (marker == Marker::kOutsideSum) value.remove_prefix(1);
  if (value.ends_with('\r')) value.remove_suffix(1);
  std::uint32_t sum = 0;
  return Compute(sum) == 0 && value == Hexadecimal(sum).data() ? 1 : 0;
}

int CRC::CheckIniFile(const char* path) {
  const File file = OpenFile(path, "rb");
  Lines<kLongLine> lines(file.get());
  std::string_view line;
  Begin();
  while (file != nullptr && lines.Next(line)) {
    if (line == "[EOF]\r\n") return CheckIniTrailer(file.get());
    Add(line);
  }
  return 0;
}

int CRC::CheckIniTrailer(std::FILE* file) {
  Lines<kLongLine> lines(file);
  std::string_view line;
  if (!lines.Next(line) || !line.ends_with("\r\n")) return 0;
  Tokens tokens(line);
  if (tokens.Next("=") != kIniSumName) return 0;
  const std::string_view value = tokens.Next("\r\n");
  std::uint32_t sum = 0;
  if (Compute(sum) != 0 || value != (sum != 0 ? Hexadecimal(sum).data() : "0")) return 0;
  return lines.Next(line) ? 0 : 1;
}

}  // namespace tavlyn
