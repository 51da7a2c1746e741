#include "files/crc.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "core/ascii_case.h"
#include "core/lines.h"
#include "core/text_file.h"
#include "core/text_tokens.h"
#include "core/wipe.h"

namespace tavlyn {
namespace {

constexpr std::uint32_t kPolynomial = 0xEDB88320;
constexpr int kNoTable = 23;

constexpr std::size_t kLongLine = 4096;
constexpr std::size_t kShortLine = 128;

enum class Marker : std::uint8_t { kNone, kInsideSum, kOutsideSum };

Marker MarkerOf(std::string_view line, std::string_view lineEnd) {
  constexpr std::string_view kText = "/--- iEndOfHwgFile";
  if (!SameText(line.substr(0, kText.size()), kText)) return Marker::kNone;
  line.remove_prefix(kText.size());
  if (line == lineEnd) return Marker::kInsideSum;
  if (!line.starts_with(' ')) return Marker::kNone;
  return line.substr(1) == lineEnd ? Marker::kOutsideSum : Marker::kNone;
}

// What stands behind the run of equals signs of a value line; empty when it is none.
std::string_view HwgValue(std::string_view line) {
  const std::size_t equals = line.find('=');
  if (equals == std::string_view::npos) return {};
  const std::string_view name = line.substr(0, equals);
  if (!SameText(name, "iEndOfHwgFile ") && !SameText(name, "iEndOfHwgFile")) return {};
  line.remove_prefix(std::min(line.find_first_not_of('=', equals), line.size()));
  return line.substr(0, line.find('\n'));
}

std::string Hexadecimal(std::uint32_t sum) {
  char text[9];
  std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(sum));
  return text;
}

struct HwgTrailer {
  Marker marker = Marker::kNone;
  std::string value;
};

// What a file with keys in it needs, so that the text leaves no copies behind where it grew out of.
constexpr std::size_t kUsualText = 1U << 16;

// Collects what the sum covers up to a marker with a value line behind it. False: the file has none.
bool FindHwgTrailer(std::FILE* file, std::string& text, HwgTrailer& trailer) {
  Lines<kShortLine> lines(file);
  std::string_view line;
  if (!lines.Next(line)) return false;
  // The first piece decides for the whole file.
  const std::string_view lineEnd = line.find("\r\n") != std::string_view::npos ? "\r\n" : "\n";
  do {
    const Marker marker = MarkerOf(line, lineEnd);
    if (lines.AtEnd()) continue;
    if (marker != Marker::kOutsideSum) text += line;
    if (marker == Marker::kNone) continue;
    // A line behind a marker that is no value line is passed over and joins nothing.
    if (!lines.Next(line)) return false;
    const std::string_view value = HwgValue(line);
    if (value.empty()) continue;
    trailer = {marker, std::string(value)};
    return true;
  } while (lines.Next(line));
  return false;
}

}  // namespace

void CRC::BuildTable() {
  table_ = std::make_unique<std::array<std::uint32_t, 256>>();
  for (std::uint32_t index = 0; index < table_->size(); ++index) {
    std::uint32_t entry = index;
    for (int round = 0; round < 8; ++round) entry = (entry & 1) != 0 ? entry >> 1 ^ kPolynomial : entry >> 1;
    (*table_)[index] = entry;
  }
}

int CRC::Compute(std::string& text, std::uint32_t& result) const {
  result = 0xFFFFFFFF;
  if (table_ != nullptr) {
    for (const char c : text)
      result = result >> 8 ^ (*table_)[(result ^ static_cast<std::uint8_t>(c)) & 0xFF];
  }
  result = ~result;
  text.clear();
  return table_ != nullptr ? 0 : kNoTable;
}

int CRC::SumOf(std::string& text, std::uint32_t& sum) {
  BuildTable();
  const int code = Compute(text, sum);
  table_.reset();
  return code;
}

std::string CRC::ReadWholeFile(const char* path) {
  Wiped<std::string> text;
  const File file = OpenFile(path, "rb");
  if (file != nullptr) text.reserve(kUsualText);
  Lines<kLongLine> lines(file.get());
  std::string_view line;
  while (file != nullptr && lines.Next(line)) text += line;
  return std::move(text);
}

int CRC::AppendHwgTrailer(const char* path) {
  Wiped<std::string> text{ReadWholeFile(path)};
  std::uint32_t sum = 0;
  if (const int code = SumOf(text, sum); code != 0) return code;
  const File file = OpenFile(path, "a");
  if (file == nullptr) return 0;
  std::fprintf(file.get(), "iEndOfHwgFile=%s", Hexadecimal(sum).c_str());
  return 1;
}

int CRC::AppendSecureTrailer(const char* path) {
  Wiped<std::string> text{ReadWholeFile(path)};
  std::uint32_t sum = 0;
  const int code = SumOf(text, sum);
  const File file = OpenFile(path, "a");
  if (file == nullptr) return code;
  std::fprintf(file.get(), "%c--- iEndOfHwgFile \niEndOfHwgFile = %s", kCommentMark,
               Hexadecimal(sum).c_str());
  return code;
}

int CRC::CheckFile(const char* path, std::uint32_t kind) {
  return kind == 0 ? CheckHwgFile(path) : static_cast<int>(CheckIniFile(path) != 0);
}

int CRC::CheckHwgFile(const char* path) {
  File file = OpenFile(path, "rb");
  Wiped<std::string> text;
  text.reserve(kUsualText);
  HwgTrailer trailer;
  if (file == nullptr || !FindHwgTrailer(file.get(), text, trailer)) return 0;
  file.reset();
  // Whatever stands behind the equals sign there, a blank when the file is whole.
  if (trailer.marker == Marker::kOutsideSum) trailer.value.erase(0, 1);
  if (trailer.value.ends_with('\r')) trailer.value.pop_back();
  std::uint32_t sum = 0;
  return SumOf(text, sum) == 0 && Hexadecimal(sum) == trailer.value ? 1 : 0;
}

int CRC::CheckIniFile(const char* path) {
  const File file = OpenFile(path, "rb");
  Lines<kLongLine> lines(file.get());
  std::string_view line;
  Wiped<std::string> text;
  text.reserve(kUsualText);
  while (file != nullptr && lines.Next(line)) {
    if (line == "[EOF]\r\n") return CheckIniTrailer(file.get(), text);
    text += line;
  }
  return 0;
}

int CRC::CheckIniTrailer(std::FILE* file, std::string& text) {
  Lines<kLongLine> lines(file);
  std::string_view line;
  if (!lines.Next(line) || !line.ends_with("\r\n")) return 0;
  Tokens tokens(line);
  if (tokens.Next("=") != "iEndOfIniFile") return 0;
  const std::string value(tokens.Next("\r\n"));
  const bool more = lines.Next(line);
  std::uint32_t sum = 0;
  if (value.empty() || SumOf(text, sum) != 0) return 0;
  return value == (sum != 0 ? Hexadecimal(sum) : "0") && !more ? 1 : 0;
}

}  // namespace tavlyn
