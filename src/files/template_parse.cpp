#include "files/template_parse.h"

#include <algorithm>

namespace tavlyn {
namespace {

template <typename Table>
auto* FindKeyword(const Table& table, std::string_view keyword) {
  const auto found =
      std::ranges::find_if(table, [&](const auto& row) { return SameText(keyword, row.keyword); });
  return found != table.end() ? &*found : nullptr;
}

}  // namespace

bool HasTitle(std::string_view head) { return Mentions(head.substr(0, kTitleWithin), kTemplateTitle); }

bool HasTitle(std::FILE* file) {
  std::array<char, kTitleWithin> head;
  const std::size_t got = std::fread(head.data(), 1, head.size(), file);
  std::rewind(file);
  return HasTitle(std::string_view(head.data(), got));
}

TemplateLine ParseLine(std::string_view line, bool inSepBlock) {
  std::string_view text = Content(line);
  text = text.substr(0, text.find_last_not_of("\r\n") + 1);
  if (text.empty()) return {LineKind::kSilent, text};
  const bool isMark = Mentions(text, kSepBlockName) && Mentions(text, inSepBlock ? kBlockEnd : kBlockBegin);
  if (inSepBlock) return {isMark ? LineKind::kSepEnd : LineKind::kSepBytes, text};
  return {isMark ? LineKind::kSepBegin : LineKind::kEntry, text};
}

TemplateEntry ParseEntry(std::string_view text) {
  TemplateEntry entry{EntryIn(text)};
  entry.option = FindKeyword(kSavedOptions, entry.key);
  if (entry.option == nullptr) entry.field = FindKeyword(kFields, entry.key);
  return entry;
}

SepBytes ParseSepBytes(std::string_view text) {
  SepBytes line{};
  Tokens tokens(text);
  while (line.count < line.bytes.size()) {
    const std::string_view token = tokens.Next(kDataDelimiters);
    unsigned byte = 0;
    if (!Scan(token, "%x", byte)) {
      line.stray = token;
      break;
    }
    line.bytes[line.count++] = static_cast<std::uint8_t>(byte);
  }
  return line;
}

}  // namespace tavlyn
