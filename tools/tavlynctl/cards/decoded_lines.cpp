// A decoded card, drawn for people.
#include <algorithm>
#include <utility>

#include "tools/tavlynctl/cards/decoding.h"

namespace tavlyn::ctl {
namespace {

constexpr std::size_t kBitsInRow = 50;
constexpr std::size_t kBitsToMark = 10;

constexpr const char* kReadersOwn = "as the reader splits it";

using DrawnLines = std::vector<std::string>;

// A number may be a text, if it is too large.
std::string ValueText(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

// "facility 12, card 34567".
std::string FieldsText(const Json& fields) {
  std::string text;
  for (const auto& [name, value] : fields.items()) {
    text += (text.empty() ? "" : ", ") + name + " " + ValueText(value);
  }
  return text;
}

// The numbers of the first of these bits and of every tenth, each above its bit.
std::string Ruler(std::size_t begin, std::size_t end) {
  std::string ruler;
  for (std::size_t bit = begin + 1; bit <= end; ++bit) {
    if (bit != begin + 1 && bit % kBitsToMark != 0) continue;
    ruler.resize(bit - 1 - begin, ' ');
    ruler += std::to_string(bit);
  }
  return ruler;
}

struct DrawnRow {
  std::string label;
  std::string letters;  // one for each bit
};

// Long cards in several rows.
void DrawRows(const std::vector<DrawnRow>& rows, DrawnLines& lines) {
  const std::size_t bits = rows.front().letters.size();
  std::size_t width = 0;
  for (const DrawnRow& row : rows) width = std::max(width, row.label.size() + 2);
  for (std::size_t begin = 0; begin < bits; begin += kBitsInRow) {
    lines.push_back(std::string(width, ' ') + Ruler(begin, std::min(begin + kBitsInRow, bits)));
    for (const DrawnRow& row : rows) {
      lines.push_back(row.label + std::string(width - row.label.size(), ' ') +
                      row.letters.substr(begin, kBitsInRow));
    }
  }
}

std::string ParityText(const Json& layout) {
  const std::string parity = layout["parity"];
  if (parity == "none") return "no parity";
  std::string text = "parity " + parity;
  const char* before = layout["bad_bits"].size() == 1 ? " at bit " : " at bits ";
  for (const Json& bit : layout["bad_bits"]) text += std::exchange(before, ", ") + ValueText(bit);
  return text;
}

std::string FoundPlaceText(const std::string& sought, const Json& place) {
  const std::string bits = place["bits"];
  const std::string withZeros = place["with_zeros"];
  return sought + " stands in bits " + bits +
         (withZeros == bits ? "" : " (with the zeros before it " + withZeros + ")") + ", " +
         ValueText(place["order"]) + (place["form"] == "binary" ? "" : ", as decimal digits");
}

}  // namespace

std::vector<std::string> DecodedLines(const Json& card) {
  const std::string sent = card["sent"];
  const Json own = card.value("reader", Json());
  std::vector<DrawnRow> rows{{"bits", sent}};
  if (!own.is_null()) rows.push_back({kReadersOwn, own["letters"]});
  for (const Json& layout : card["layouts"]) rows.push_back({layout["name"], layout["letters"]});
  DrawnLines lines;
  DrawRows(rows, lines);
  for (const Json& number : card["numbers"]) {
    lines.push_back(ValueText(number["order"]) + ": hexadecimal " + ValueText(number["hexadecimal"]) +
                    ", decimal " + ValueText(number["decimal"]));
  }
  if (!own.is_null()) lines.push_back(std::string(kReadersOwn) + ": " + FieldsText(own["fields"]));
  for (const Json& layout : card["layouts"]) {
    lines.push_back(std::to_string(sent.size()) + " bits, " + ParityText(layout) + ": " +
                    FieldsText(layout["fields"]) + " (" + ValueText(layout["name"]) + ")");
  }
  for (const Json& note : card["notes"]) lines.push_back(note);
  if (!card.contains("find")) return lines;
  for (const Json& field : card["named"])
    lines.push_back(ValueText(card["find"]) + " is the " + ValueText(field));
  for (const Json& place : card["found"]) lines.push_back(FoundPlaceText(card["find"], place));
  return lines;
}

void ShowDecoded(const Json& card) {
  for (const std::string& line : DecodedLines(card)) ShowEvent({}, "  " + line, false);
}

}  // namespace tavlyn::ctl
