#include "tools/manual/mdoc.h"

#include <cctype>

namespace tavlyn::manual {
namespace {

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) escaped += c == '\\' ? std::string("\\e") : std::string(1, c);
  return escaped;
}

// A dot or an apostrophe at its start would make a line a request.
std::string TextLine(const std::string& line) {
  const bool isRequest = line.starts_with('.') || line.starts_with('\'');
  return (isRequest ? "\\&" : "") + Escaped(line) + "\n";
}

// Of at most this many characters, as mandoc wants it.
constexpr std::size_t kWidth = 78;

std::string Folded(const std::string& sentence) {
  std::string lines;
  std::size_t begin = 0;
  while (sentence.size() - begin > kWidth) {
    std::size_t end = sentence.rfind(' ', begin + kWidth);
    if (end == std::string::npos || end <= begin) end = sentence.find(' ', begin);
    if (end == std::string::npos) break;
    lines += TextLine(sentence.substr(begin, end - begin));
    begin = end + 1;
  }
  return lines + TextLine(sentence.substr(begin));
}

}  // namespace

std::string Sentences(const std::string& text) {
  if (text.empty()) return {};
  std::string lines;
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = text.find(". ", begin)) != std::string::npos; begin = end + 2) {
    lines += Folded(text.substr(begin, end + 1 - begin));
  }
  const std::string last = text.substr(begin);
  return lines + Folded(last.ends_with('.') ? last : last + ".");
}

std::string Argument(const std::string& word) {
  // Names of requests have two or three letters, the first a capital and the second not.
  const bool mayBeRequest = word.size() <= 3 && word.size() >= 2 &&
                            std::isupper(static_cast<unsigned char>(word[0])) != 0 &&
                            std::islower(static_cast<unsigned char>(word[1])) != 0;
  return (mayBeRequest ? "\\&" : "") + Escaped(word);
}

std::string Item(const std::string& what, const std::string& text) {
  return ".It " + what + "\n" + Sentences(text);
}

std::string List(const std::string& items) {
  return items.empty() ? "" : ".Bl -tag -width Ds\n" + items + ".El\n";
}

std::string Literal(const std::string& lines) {
  std::string block = ".Bd -literal -offset indent\n";
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = lines.find('\n', begin)) != std::string::npos; begin = end + 1) {
    block += TextLine(lines.substr(begin, end - begin));
  }
  return block + ".Ed\n";
}

}  // namespace tavlyn::manual
