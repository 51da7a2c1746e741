// read.
#include "tools/tavlynctl/cards/cards.h"

#include <algorithm>
#include <thread>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/progress.h"
#include "tools/tavlynctl/text_dialect.h"
#include "tools/tavlynctl/watch/watching.h"

namespace tavlyn::ctl {
namespace {

constexpr double kReadTimeout = 10;  // seconds

// By the call with that many bytes.
std::optional<Card> CardBy(decltype(&GetActiveID) ask, std::int16_t bytes) {
  Card card;
  card.bits = ask(card.id.data(), bytes);
  // A failed answer from a serial reader may contain what looks like a card.
  if (GetLastLibErr() != 0) return std::nullopt;
  return card.bits != 0 ? card : Card{};
}

std::optional<Card> NextCard(const Link& link) {
  std::this_thread::sleep_for(kCardPause);
  const auto card = AskForCard(link);
  if (!card || !card->IsDoubtful()) return card;
  std::this_thread::sleep_for(kCardPause);
  return AskForCard(link);
}

// "lay a card on reader 0 (9 s)"; nothing once nobody has time to.
std::string Invitation(Clock::time_point deadline) {
  const auto left = std::chrono::ceil<std::chrono::seconds>(deadline - Clock::now()).count();
  if (left <= 0) return {};
  return "lay a card on reader " + std::to_string(ActiveIndex()) + " (" + std::to_string(left) + " s)";
}

struct ReadCard {
  std::optional<double> timeout;  // seconds

  void Take(Words& words) {
    words.Timeout(timeout, "Seconds to wait for a card, at most a week (10); 0 asks once");
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    Session session(request.link);
    session.UseForCards(request.device);
    session.Settle();
    Json document = request.Document();
    DescribeNext(request.link, timeout, document);
    return document;
  }
};

}  // namespace

bool Card::IsDoubtful() const {
  return bits != 0 && std::ranges::all_of(id, [](std::uint8_t byte) { return byte == 0; });
}

std::optional<Card> AskForCard(const Link& link) {
  if (link.ascii && !ShortenTextRead(link)) return std::nullopt;
  return CardBy(GetActiveID32, sizeof(Card::id));
}

std::optional<Card> AskBriefly() { return CardBy(GetActiveID, kBriefBits / 8); }

void Describe(const Card& card, Json& into) {
  const auto count = std::min<std::size_t>((static_cast<std::size_t>(card.bits) + 7) / 8, card.id.size());
  std::string number;
  Json bytes = Json::array();
  for (std::size_t i = 0; i < count; ++i) {
    number.insert(0, Hex(card.id[i], 2));
    bytes.push_back(card.id[i]);
  }
  into["bits"] = card.bits;
  into["id"] = number;
  into["bytes"] = std::move(bytes);
}

void DescribeNext(const Link& link, const std::optional<double>& seconds, Json& into) {
  const auto deadline = After(seconds.value_or(kReadTimeout));
  int failed = 0;
  LiveLine line;
  do {
    if (ProgressIsSeen()) line.Show(Invitation(deadline));
    const auto card = NextCard(link);
    failed = card ? 0 : failed + 1;
    if (failed == kFailedPolls) {
      throw Failure(kDeviceError, ActiveDeviceName() + " does not answer, " + ErrorText());
    }
    if (card && card->bits != 0) return Describe(*card, into);
  } while (Clock::now() < deadline);
  throw NoCard();
}

void AddReads(Program& program) {
  program.Add<ReadCard>("read", "The card on a reader, or the next one");
  AddWatch(program);
}

}  // namespace tavlyn::ctl
