// A number searched in a card.
#include <algorithm>
#include <bit>
#include <charconv>
#include <set>

#include "tools/tavlynctl/cards/bit_orders.h"
#include "tools/tavlynctl/cards/decoding.h"

namespace tavlyn::ctl {
namespace {

constexpr const char* kHexSign = "0x";
constexpr std::size_t kBcdBits = 4;

// The lowest bits of a number, highest first.
std::string BitsOf(std::uint64_t number, std::size_t count) {
  std::string bits;
  for (std::size_t bit = count; bit-- != 0;) bits += (number >> bit & 1U) != 0 ? '1' : '0';
  return bits;
}

// A number as it may be written into a card.
struct WrittenForm {
  const char* name;
  std::string bits;
};

std::vector<WrittenForm> WrittenForms(const SoughtNumber& sought) {
  std::vector<WrittenForm> forms{
      {"binary", BitsOf(sought.value, static_cast<std::size_t>(std::bit_width(sought.value)))}};
  const bool isHex = sought.text.starts_with(kHexSign);
  // A single digit is the same in both.
  if (isHex || sought.text.size() == 1) return forms;
  std::string digits;
  for (const char digit : sought.text) digits += BitsOf(static_cast<std::uint64_t>(digit - '0'), kBcdBits);
  forms.push_back({"decimal digits", digits});
  return forms;
}

// "10-25", "17-20 9-12": the places as bits that count from 1 after the stripped ones.
std::string SpansOf(std::span<const std::size_t> places, std::size_t stripped) {
  std::string text;
  for (std::size_t at = 0; at < places.size();) {
    if (places[at] == kBeyond) {
      ++at;
      continue;
    }
    std::size_t end = at + 1;
    // Unsigned, so that a step down is a number too.
    const std::size_t step = end < places.size() ? places[end] - places[at] : 0;
    const bool runs = step == 1 || step == std::size_t{0} - 1;
    while (runs && end < places.size() && places[end] != kBeyond && places[end] - places[end - 1] == step)
      ++end;
    text += (text.empty() ? "" : " ") + std::to_string(places[at] + stripped + 1);
    if (end - at > 1) text += "-" + std::to_string(places[end - 1] + stripped + 1);
    at = end;
  }
  return text;
}

// Zeros before a number may belong to it.
std::size_t WithZeros(const std::string& bits, std::size_t at) {
  while (at != 0 && bits[at - 1] == '0') --at;
  return at;
}

void FindInOrder(const std::string& handed, std::size_t stripped, const BitOrder& order,
                 const WrittenForm& form, Json& found) {
  const Places places = order.places(handed.size());
  const std::string bits = InOrder(handed, places);
  const auto spans = [&](std::size_t begin, std::size_t end) {
    return SpansOf(std::span(places).subspan(begin, end - begin), stripped);
  };
  for (std::size_t at = bits.find(form.bits); at != std::string::npos; at = bits.find(form.bits, at + 1)) {
    const std::size_t end = at + form.bits.size();
    found.push_back({{"bits", spans(at, end)},
                     {"with_zeros", spans(WithZeros(bits, at), end)},
                     {"form", form.name},
                     {"order", order.name}});
  }
}

// "facility of 26-bit standard", for each field that has this number.
Json FieldsWith(std::uint64_t number, const Json& card) {
  Json named = Json::array();
  for (const Json& layout : card["layouts"]) {
    for (const auto& [field, value] : layout["fields"].items()) {
      if (value == number) named.push_back(field + " of " + layout["name"].get<std::string>());
    }
  }
  return named;
}

}  // namespace

SoughtNumber ParseSought(const std::string& text) {
  const bool isHex = text.starts_with(kHexSign);
  SoughtNumber sought{.text = text};
  const char* end = text.data() + text.size();
  const auto [stop, error] =
      std::from_chars(text.data() + (isHex ? 2 : 0), end, sought.value, isHex ? 16 : 10);
  if (error == std::errc() && stop == end && sought.value != 0) return sought;
  throw Failure(kUsage,
                "what is searched in a card is a number of 64 bits at most, as 34567 or 0x8707, and not 0");
}

void AddPlaces(const SoughtNumber& sought, Json& card) {
  std::string handed = card["sent"];
  const std::size_t stripped = std::min(handed.find_first_not_of(kStripped), handed.size());
  std::erase(handed, kStripped);
  Json found = Json::array();
  std::set<Places> seen;
  for (const BitOrder& order : BitOrders()) {
    // Of up to eight bits there is only one byte.
    if (!seen.insert(order.places(handed.size())).second) continue;
    for (const WrittenForm& form : WrittenForms(sought)) FindInOrder(handed, stripped, order, form, found);
  }
  card["find"] = sought.text;
  card["named"] = FieldsWith(sought.value, card);
  card["found"] = std::move(found);
}

}  // namespace tavlyn::ctl
