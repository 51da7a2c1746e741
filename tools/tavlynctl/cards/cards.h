// Cards as readers give them.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

#include "tools/tavlynctl/link.h"
#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// The library leaves a reader alone for 235 ms after each exchange and repeats the last card, of any reader;
// some systems count time in steps of 16 ms.
inline constexpr std::chrono::milliseconds kCardPause(255);

struct Card {
  int bits = 0;  // 0: none
  std::array<std::uint8_t, 32> id{};

  // The count is asked for after the ID: a card laid down in between has a count and an ID of zeros.
  [[nodiscard]] bool IsDoubtful() const;
};

// The card on the active reader; nothing if the reader did not answer.
std::optional<Card> AskForCard(const Link& link);
// The same of a reader on USB in two exchanges instead of five; of a longer ID it has the lowest bits.
inline constexpr int kBriefBits = 64;
std::optional<Card> AskBriefly();

// The bytes that hold the bits, as the reader sends them: lowest first. The printed number has the highest
// first.
void Describe(const Card& card, Json& into);

// The same of the card that is on the active reader or comes next. Throws Failure if none comes in so many
// seconds, or in ten.
void DescribeNext(const Link& link, const std::optional<double>& seconds, Json& into);

}  // namespace tavlyn::ctl
