// What the devices of each product are asked while they are watched.
#pragma once

#include <functional>

#include "tools/tavlynctl/watch/watched.h"

namespace tavlyn::ctl {

inline constexpr const char* kCardComes = "card";
inline constexpr const char* kCardGone = "gone";

// Told of one of these, with the card in reader.on; returns how many events that makes.
using TellCard = std::function<int(const char* event, const Watched& reader)>;
Inquiry CardInquiry(const Link& link, const TellCard& tell);

// Told of a swipe and its tracks.
using TellSwipe = std::function<void(const Watched& reader, const Json& tracks)>;
Inquiry SwipeInquiry(const TellSwipe& tell);

}  // namespace tavlyn::ctl
