// The requests and variables of the text dialect.
#include <string>
#include <string_view>
#include <vector>

#include "core/fields.h"
#include "docs/protocol/page.h"

namespace tavlyn::page {
namespace {

using namespace field;

// A text with its line ends written as in C.
std::string Printable(std::string_view text) {
  std::string printable;
  for (const char character : text) printable += character == '\r' ? "\\r" : std::string(1, character);
  return printable;
}

// The key without the colon before it, as it is assigned.
Row KeyRow(std::string_view key, FieldId field, std::string_view sent) {
  const std::string form = sent == "kNumber" ? "number" : sent == "kCharacter" ? "character" : "never";
  return {Code(std::string(key.substr(1))), FieldName(field), form};
}

}  // namespace

std::string TextRequests() {
  return Table({"Text", "What it does"}, {
#define REQUEST(name, text, does) {Code(Printable(text)), does},
#include "reader/ascii_words.inc"
                                         });
}

std::string TextKeys() {
  return Table({"Key", "Field", "Assigned as"}, {
#define KEY(key, field, sent, ...) KeyRow(key, field, #sent),
#include "reader/ascii_words.inc"
                                                });
}

}  // namespace tavlyn::page
