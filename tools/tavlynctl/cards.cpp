// read and watch.
#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <thread>

#include "api.h"
#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/hex.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/text_dialect.h"
#include "tools/tavlynctl/watching.h"

namespace tavlyn::ctl {
namespace {

// The library leaves a reader alone for 235 ms after each exchange.
constexpr std::chrono::milliseconds kCardPause(250);
constexpr std::int16_t kLongestId = 32;
constexpr double kReadTimeout = 10;  // seconds

struct Card {
  int bits = 0;  // 0: none
  std::array<std::uint8_t, kLongestId> id{};

  bool operator==(const Card&) const = default;
};

class Poll {
 public:
  explicit Poll(const Link& link) : link_(link) {}

  // The card on the reader; nothing if the reader could not be asked. Throws Failure when the reader is lost.
  std::optional<Card> Next() {
    std::this_thread::sleep_for(kCardPause);
    if (link_.ascii && !ShortenTextRead(link_)) {
      answers_.Came(false);
      return std::nullopt;
    }
    Card card;
    card.bits = GetActiveID32(card.id.data(), kLongestId);
    // A failed answer from a serial reader may contain what looks like a card.
    if (!answers_.Came(GetLastLibErr() == 0)) return std::nullopt;
    return card.bits != 0 ? card : Card{};
  }

 private:
  const Link& link_;
  Answers answers_;
};

// The bytes that hold the bits, as the reader sends them: lowest first. The printed number has the highest
// first.
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

// Shows what has changed and counts it.
int ShowChange(const Card& before, const Card& now, const Request& request) {
  if (before == now) return 0;
  int events = 0;
  for (const auto& [event, card] : {std::pair{"gone", before}, std::pair{"card", now}}) {
    if (card.bits == 0) continue;
    Json line = request.Document();
    line["event"] = event;
    Describe(card, line);
    ShowEvent(line, request.json);
    ++events;
  }
  return events;
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
    const auto deadline = After(timeout.value_or(kReadTimeout));
    Poll poll(request.link);
    do {
      const auto card = poll.Next();
      if (!card || card->bits == 0) continue;
      Json document = request.Document();
      Describe(*card, document);
      return document;
    } while (Clock::now() < deadline);
    throw NoCard();
  }
};

// Shows its events itself and returns no document.
struct WatchCards {
  int count = 0;  // 0: any number of lines
  std::optional<double> timeout;

  void Take(Words& words) {
    words.Count(count, "End after this many lines");
    words.Timeout(timeout, "End after this many seconds");
    words.Device();
  }

  [[nodiscard]] Json Run(const Request& request) const {
    Session session(request.link);
    session.UseForCards(request.device);
    session.Settle();
    Watching watching(timeout, count);
    TellWatched(request.json);
    Poll poll(request.link);
    Card before;
    while (watching.GoesOn()) {
      const auto now = poll.Next();
      if (!now) continue;
      watching.Count(ShowChange(before, *now, request));
      before = *now;
    }
    return {};
  }
};

}  // namespace

void AddReads(Program& program) {
  program.Add<ReadCard>("read", "The card on a reader, or the next one");
  program.Add<WatchCards>("watch", "A line for each card that comes or goes, until Ctrl-C");
}

}  // namespace tavlyn::ctl
