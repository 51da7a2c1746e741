// watch.
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/cards/cards.h"
#include "tools/tavlynctl/cards/decoding.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/watch/watched.h"

namespace tavlyn::ctl {
namespace {

constexpr std::string_view kCardComes = "card";

// Null for none.
Json Described(const Card& card) {
  Json described;
  if (card.bits != 0) Describe(card, described);
  return described;
}

// Shows its events itself and returns no document.
struct WatchCards {
  WatchWords words;
  bool decode = false;

  void Take(Words& taken) {
    taken.Flag("--decode", decode, "What the bits of each card say, as card shows it");
    words.Take(taken);
  }

  [[nodiscard]] Json Run(const Request& request) const {
    Events events(request, words.events);
    const auto layouts = decode ? KnownLayouts("") : std::vector<Layout>();
    const auto tell = [&](const char* event, const Watched& reader) {
      if (reader.on.is_null()) return 0;
      Json found = reader.on;
      const bool isDecoded = decode && event == kCardComes;
      if (isDecoded) Decode(ActiveHanding(), layouts, found);
      const std::string line = CardLine(event, reader.on);
      const bool isShown =
          events.Tell(event, reader.place, found, words.all ? line + " on " + reader.place.Name() : line);
      if (isDecoded && isShown && !request.json && words.events.format.empty()) ShowDecoded(found);
      return isShown ? 1 : 0;
    };
    const auto change = [&](Watched& reader, Json now) {
      if (now == reader.on) return 0;
      const int gone = tell("gone", reader);
      reader.on = std::move(now);
      return gone + tell(kCardComes.data(), reader);
    };
    const auto ask = [&](Watched& reader) -> std::optional<int> {
      const auto card = AskForCard(request.link);
      if (!card) return std::nullopt;
      Json now = Described(*card);
      const Json doubted = std::exchange(reader.doubted, {});
      if (doubted.is_null() && card->IsDoubtful() && now != reader.on) {
        reader.doubted = std::move(now);
        return 0;
      }
      const int before = now.is_null() && !doubted.is_null() ? change(reader, doubted) : 0;
      return before + change(reader, std::move(now));
    };
    const auto leave = [&](Watched& reader) {
      const int before = reader.doubted.is_null() ? 0 : change(reader, std::exchange(reader.doubted, {}));
      return before + tell("gone", reader);
    };
    Watch(request, words, events, {kReaders, kCardPause, ask, leave}).Run();
    return {};
  }
};

}  // namespace

void AddWatch(Program& program) {
  program.Add<WatchCards>("watch", "A line for each card that comes or goes, until Ctrl-C");
}

}  // namespace tavlyn::ctl
