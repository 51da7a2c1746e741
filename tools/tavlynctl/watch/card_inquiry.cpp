#include <optional>
#include <utility>

#include "tools/tavlynctl/cards/cards.h"
#include "tools/tavlynctl/watch/inquiries.h"

namespace tavlyn::ctl {
namespace {

// Null for none.
Json Described(const Card& card) {
  Json described;
  if (card.bits != 0) Describe(card, described);
  return described;
}

}  // namespace

Inquiry CardInquiry(const Link& link, const TellCard& tell) {
  const auto end = [tell](const Watched& reader) {
    return reader.on.is_null() ? 0 : tell(kCardGone, reader);
  };
  const auto change = [tell, end](Watched& reader, Json now) {
    if (now == reader.on) return 0;
    const int gone = end(reader);
    reader.on = std::move(now);
    return gone + (reader.on.is_null() ? 0 : tell(kCardComes, reader));
  };
  const auto ask = [&link, change, hasLongIds = false](Watched& reader) mutable -> std::optional<int> {
    const bool briefly = link.kind == LinkKind::kUsb && !hasLongIds;
    const auto card = briefly ? AskBriefly() : AskForCard(link);
    if (!card) return std::nullopt;
    // The whole of it with the next look: who has one such card has more of them.
    hasLongIds = hasLongIds || card->bits > kBriefBits;
    if (briefly && hasLongIds) return 0;
    Json now = Described(*card);
    const Json doubted = std::exchange(reader.doubted, {});
    if (doubted.is_null() && card->IsDoubtful() && now != reader.on) {
      reader.doubted = std::move(now);
      return 0;
    }
    const int before = now.is_null() && !doubted.is_null() ? change(reader, doubted) : 0;
    return before + change(reader, std::move(now));
  };
  const auto leave = [change, end](Watched& reader) {
    const int before = reader.doubted.is_null() ? 0 : change(reader, std::exchange(reader.doubted, {}));
    return before + end(reader);
  };
  return {kReaders, kCardPause, ask, leave};
}

}  // namespace tavlyn::ctl
