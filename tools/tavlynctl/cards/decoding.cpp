#include "tools/tavlynctl/cards/decoding.h"

#include <algorithm>

#include "tools/tavlynctl/cards/bit_orders.h"

namespace tavlyn::ctl {
namespace {

constexpr char kParityLetter = 'P';
constexpr char kNoLetter = '-';

// The bits of a card as it sends them, a character each.
std::string SentBits(const Json& card, const Handing& handing) {
  const Json& bytes = card["bytes"];
  std::string sent(static_cast<std::size_t>(handing.leading), kStripped);
  for (int bit = card["bits"].get<int>() - 1; bit >= 0; --bit) {
    const auto byte = static_cast<std::size_t>(bit / 8);
    sent += byte < bytes.size() && (bytes[byte].get<unsigned>() >> (bit % 8) & 1U) != 0 ? '1' : '0';
  }
  return sent.append(static_cast<std::size_t>(handing.trailing), kStripped);
}

std::string_view BitsIn(std::string_view bits, const BitSpan& span) {
  return bits.substr(static_cast<std::size_t>(span.first - 1),
                     static_cast<std::size_t>(span.last - span.first + 1));
}

Json WholeNumbers(std::string_view handed) {
  Json numbers = Json::array();
  for (const BitOrder& order : BitOrders()) {
    if (!order.ofBytes) continue;
    const std::string bits = InOrder(handed, order.places(handed.size()));
    numbers.push_back({{"order", order.name}, {"hexadecimal", HexDigits(bits)}, {"decimal", Decimal(bits)}});
  }
  return numbers;
}

// What does not fit into the numbers of most programs is a text.
Json FieldNumber(std::string_view bits) {
  if (bits.size() > kMostNumberBits) return Decimal(bits);
  return ValueOf(bits);
}

void MarkLetters(std::string& letters, const BitSpan& span, char letter) {
  for (int bit = span.first; bit <= span.last; ++bit) letters[static_cast<std::size_t>(bit - 1)] = letter;
}

bool IsWhole(std::string_view bits) { return bits.find(kStripped) == std::string_view::npos; }

enum class ParityFit : std::uint8_t { kGood, kBad, kUntested };

ParityFit TestParity(const Layout::Parity& parity, std::string_view sent) {
  std::string bits(1, sent[static_cast<std::size_t>(parity.bit - 1)]);
  for (const BitSpan& span : parity.over) bits += BitsIn(sent, span);
  if (!IsWhole(bits)) return ParityFit::kUntested;
  const bool isOdd = std::ranges::count(bits, '1') % 2 != 0;
  return isOdd == parity.odd ? ParityFit::kGood : ParityFit::kBad;
}

void DescribeParity(const Layout& layout, std::string_view sent, Json& row) {
  bool untested = false;
  Json bad = Json::array();
  for (const Layout::Parity& parity : layout.parity) {
    const ParityFit fit = TestParity(parity, sent);
    untested = untested || fit == ParityFit::kUntested;
    if (fit == ParityFit::kBad) bad.push_back(parity.bit);
  }
  row["parity"] = !bad.empty() ? "bad" : untested ? "stripped" : layout.parity.empty() ? "none" : "good";
  row["bad_bits"] = std::move(bad);
}

// As a layout has it; null if it does not fit.
Json Fitted(const Layout& layout, std::string_view sent) {
  const auto isStripped = [&](const Layout::Number& one) { return !IsWhole(BitsIn(sent, one.bits)); };
  if (sent.size() != static_cast<std::size_t>(layout.bits) ||
      std::ranges::any_of(layout.numbers, isStripped)) {
    return {};
  }
  Json row{{"name", layout.name}};
  DescribeParity(layout, sent, row);
  std::string letters(sent.size(), kNoLetter);
  Json fields = Json::object();
  for (const Layout::Number& one : layout.numbers) {
    MarkLetters(letters, one.bits, static_cast<char>(one.name[0] - 'a' + 'A'));
    fields[one.name] = FieldNumber(BitsIn(sent, one.bits));
  }
  for (const Layout::Parity& one : layout.parity) MarkLetters(letters, {one.bit, one.bit}, kParityLetter);
  row["letters"] = std::move(letters);
  row["fields"] = std::move(fields);
  return row;
}

// As the reader is configured to split a card of so many bits.
Layout ReadersOwn(int bits, const Handing& handing) {
  const int first = handing.leading + 1;
  const int last = handing.leading + bits;
  const int split = std::max(first, last - *handing.idBits + 1);
  Layout layout;
  layout.bits = last + handing.trailing;
  if (split != first) layout.numbers.push_back({"facility", {first, split - 1}});
  layout.numbers.push_back({"card", {split, last}});
  for (int bit = 1; bit < first; ++bit) layout.parity.push_back({bit, false, {}});
  for (int bit = last + 1; bit <= layout.bits; ++bit) layout.parity.push_back({bit, false, {}});
  return layout;
}

std::string StrippedText(int bits, const char* kind) {
  return std::to_string(bits) + " " + kind + (bits == 1 ? " bit" : " bits");
}

std::vector<std::string> NotesOn(const Handing& handing, bool fits) {
  std::vector<std::string> notes = handing.notes;
  if (!fits) {
    const bool isGiven = !handing.idBits && handing.leading + handing.trailing == 0;
    notes.push_back(std::string("no layout of that many bits is known") +
                    (isGiven ? "; --leading and --trailing say how many bits a reader has stripped" : ""));
  }
  if (handing.leading + handing.trailing != 0) {
    notes.push_back("the reader strips " + StrippedText(handing.leading, "leading") + " and " +
                    StrippedText(handing.trailing, "trailing") +
                    "; set iLeadParityBitCnt and iTrailParityBitCnt to 0 to see parity");
  }
  return notes;
}

}  // namespace

void Decode(const Handing& handing, const std::vector<Layout>& layouts, Json& card) {
  const std::string sent = SentBits(card, handing);
  const int bits = card["bits"];
  card["sent"] = sent;
  card["stripped"] = {{"leading", handing.leading}, {"trailing", handing.trailing}};
  card["numbers"] = WholeNumbers(BitsIn(sent, {handing.leading + 1, handing.leading + bits}));
  if (handing.idBits) {
    const Json own = Fitted(ReadersOwn(bits, handing), sent);
    card["reader"] = {{"letters", own["letters"]}, {"fields", own["fields"]}};
  }
  Json& fitting = card["layouts"] = Json::array();
  for (const Layout& layout : layouts) {
    Json row = Fitted(layout, sent);
    if (!row.is_null()) fitting.push_back(std::move(row));
  }
  card["notes"] = NotesOn(handing, !fitting.empty());
}

}  // namespace tavlyn::ctl
