// watch.
#include <string>
#include <string_view>
#include <vector>

#include "tools/tavlynctl/areas.h"
#include "tools/tavlynctl/cards/decoding.h"
#include "tools/tavlynctl/program.h"
#include "tools/tavlynctl/watch/inquiries.h"

namespace tavlyn::ctl {
namespace {

// Shows its events itself and returns no document.
struct WatchCards {
  WatchWords words;
  bool decode = false;

  void Take(Words& taken) {
    taken.Flag("--decode", decode, "What the bits of each card say, as card shows it");
    words.Take(taken);
  }

  [[nodiscard]] Json Run(const Request& request) const {
    ShownEvents events(request, words.events);
    const auto layouts = decode ? KnownLayouts("") : std::vector<Layout>();
    const auto tell = [&](const char* event, const Watched& reader) {
      Json found = reader.on;
      const bool isDecoded = decode && std::string_view(event) == kCardComes;
      if (isDecoded) Decode(ActiveHanding(), layouts, found);
      const std::string line = CardLine(event, reader.on);
      const bool isShown =
          events.Tell(event, reader.place, found, words.all ? line + " on " + reader.place.Name() : line);
      if (isDecoded && isShown && !request.json && words.events.format.empty()) ShowDecoded(found);
      return isShown ? 1 : 0;
    };
    Watch(request, words, events, CardInquiry(request.link, tell)).Run();
    return {};
  }
};

}  // namespace

void AddWatch(Program& program) {
  program.Add<WatchCards>("watch", "A line for each card that comes or goes, until Ctrl-C");
}

}  // namespace tavlyn::ctl
