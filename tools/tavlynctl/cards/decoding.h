// What the bits of a card say. Nothing here asks a device.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/tavlynctl/cards/handing.h"
#include "tools/tavlynctl/cards/layouts.h"
#include "tools/tavlynctl/output.h"

namespace tavlyn::ctl {

// Among the bits of a card, one that the reader has stripped.
inline constexpr char kStripped = '?';

inline constexpr const char* kLayoutsText =
    "More layouts of cards; otherwise those in the configuration folder";

// Adds what it says to a card with its "bits" and "bytes", as read shows it.
void Decode(const Handing& handing, const std::vector<Layout>& layouts, Json& card);

// What people type to be searched for.
struct SoughtNumber {
  std::string text;
  std::uint64_t value = 0;
};
// From a decimal number, or a hexadecimal one after 0x. Throws Failure.
SoughtNumber ParseSought(const std::string& text);
// Adds to a decoded card where it stands.
void AddPlaces(const SoughtNumber& sought, Json& card);

// A decoded card, with what was found in it, for people.
std::vector<std::string> DecodedLines(const Json& card);
void ShowDecoded(const Json& card);

}  // namespace tavlyn::ctl
