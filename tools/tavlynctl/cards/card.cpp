// card: what the bits of one card say.
#include <algorithm>
#include <charconv>

#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/cards/cards.h"
#include "tools/tavlynctl/cards/decoding.h"
#include "tools/tavlynctl/config/fields.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/program.h"

namespace tavlyn::ctl {
namespace {

constexpr int kMostStripped = 142;
constexpr std::size_t kDigitBits = 4;

Failure NoSuchCard() {
  return {kUsage, "a card is BITS:HEX or HEX, of 1 to " + std::to_string(kMostCardBits) +
                      " bits and no more digits than they need"};
}

// "26:0190E0F" with the highest byte first, as read shows it; without a number of bits all that the digits
// have.
void ParseCard(const std::string& text, Json& into) {
  const std::size_t colon = text.find(':');
  std::string digits = colon == std::string::npos ? text : text.substr(colon + 1);
  std::size_t bits = digits.size() * kDigitBits;
  if (colon != std::string::npos) {
    const auto [stop, error] = std::from_chars(text.data(), text.data() + colon, bits);
    if (error != std::errc() || stop != text.data() + colon) throw NoSuchCard();
  }
  if (digits.empty() || bits < 1 || bits > kMostCardBits) throw NoSuchCard();
  if (digits.size() % 2 != 0) digits.insert(0, 1, '0');
  Card card{.bits = static_cast<int>(bits)};
  const Bytes bytes = ParseHex(digits, "a card");
  if (bytes.size() > card.id.size()) throw NoSuchCard();
  std::ranges::copy(bytes.rbegin(), bytes.rend(), card.id.begin());
  for (std::size_t bit = bits; bit < card.id.size() * 8; ++bit) {
    if ((card.id[bit / 8] >> bit % 8 & 1) != 0) throw NoSuchCard();
  }
  Describe(card, into);
}

struct DecodeCard {
  std::string text;  // empty: the card on the reader
  std::string layoutFile;
  std::optional<std::string> find;
  Handing given;
  int configuration = 0;
  std::optional<double> timeout;

  void Take(Words& words) {
    auto* card =
        words.Text("CARD", text, "BITS:HEX or HEX as read shows it; without it the card on the reader");
    card->required(false);
    words.Text("--find", find, "Where this number stands in the card: decimal, or hexadecimal after 0x")
        ->required(false)
        ->option_text("NUMBER");
    words.Text("--layouts", layoutFile, kLayoutsText)->required(false)->option_text("FILE");
    words.Number("--leading", given.leading, 0, kMostStripped, "Bits that were stripped before CARD (0)")
        ->needs(card);
    words.Number("--trailing", given.trailing, 0, kMostStripped, "Bits that were stripped after CARD (0)")
        ->needs(card);
    words.Number("--config", configuration, 0, kHighestConfiguration, "Configuration of a plus reader (0)");
    words.Timeout(timeout, "Seconds to wait for a card, at most a week (10); 0 asks once");
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    const std::vector<Layout> layouts = KnownLayouts(layoutFile);
    std::optional<SoughtNumber> sought;
    if (find) sought = ParseSought(*find);
    Json card = text.empty() ? request.DeviceDocument() : request.Document();
    Decode(Taken(request, card), layouts, card);
    if (sought) AddPlaces(*sought, card);
    if (!request.json) {
      Show(card, false);
      ShowDecoded(card);
    }
    Json document = request.json ? card : Json();
    if (sought && card["found"].empty()) {
      throw Failure(kNoCard, sought->text + " does not stand in the card", document);
    }
    return document;
  }

 private:
  // Adds the card.
  [[nodiscard]] Handing Taken(const Request& request, Json& into) const {
    if (!text.empty()) {
      ParseCard(text, into);
      return given;
    }
    Session session(request.link);
    session.UseForCards(request.device);
    session.Settle();
    into["configuration"] = configuration;
    Handing handing;
    {
      const SelectedConfiguration selected(configuration);
      handing = ActiveHanding();
    }
    DescribeNext(request.link, timeout, into);
    return handing;
  }
};

}  // namespace

void AddCard(Program& program) {
  program.Add<DecodeCard>("card", "What the bits of a card say: parity, facility, number");
}

}  // namespace tavlyn::ctl
