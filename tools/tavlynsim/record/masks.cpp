#include "tools/tavlynsim/record/masks.h"

#include <algorithm>
#include <bit>
#include <optional>
#include <string_view>

#include "sim/devices/hex.h"

namespace tavlyn::sim {
namespace {

struct Family {
  std::string_view name;
  std::uint16_t vid;
  std::uint16_t pid;
};

constexpr Family kFamilies[] = {
#define PRODUCT(name, kind, vid, pid) {#name, 0x##vid, 0x##pid},
#include "core/products.inc"
#undef PRODUCT
};

// The opcodes of the reader's commands. What others carry is unknown, and may be keys.
constexpr std::uint8_t kOpcodes[] = {0x80, 0x81, 0x82, 0x83, 0x84, 0x85, 0x88, 0x89,
                                     0x8A, 0x8C, 0x8D, 0x8E, 0x8F, 0x90, 0xA0};
// A second report with the data may follow these.
constexpr std::uint8_t kHighestStoring = 0x85;
constexpr std::uint8_t kIdentity = 0x8A;
// The data of these are separated fields and hash keys.
constexpr std::uint8_t kKeysFollow = 0x85;

// Where keys begin in a report of that command, counted from the opcode.
constexpr std::size_t kItemBytes = 4;

bool IsKnown(std::uint8_t opcode) { return std::ranges::find(kOpcodes, opcode) != std::end(kOpcodes); }

template <typename Command>
bool HasId(const Command& c) {
  switch (c[0]) {
    case 0x8D:
    case 0x8F: return true;
    case 0x88: return c[1] == 0x01;
    case 0x8C: return (c[1] == 0x02 && c[2] < 4) || (c[1] == 0x09 && c[3] != 0);
    default: return false;
  }
}

// A block of an item of the protected memory.
template <typename Command>
bool HasItem(const Command& c) {
  return c[0] == 0x89 && (c[1] == 0x10 || c[1] == 0x90) && c[3] != 0;
}

void Cover(Shown& shown, std::size_t first) {
  for (std::size_t at = first; at < shown.size(); ++at) shown[at] = kCovered;
}

}  // namespace

std::uint8_t StandIns::DrawByte(unsigned bits, bool isHighest) {
  const unsigned all = (1U << bits) - 1;
  const unsigned drawn = chance_() & all;
  return static_cast<std::uint8_t>(isHighest ? drawn | 1U << (bits - 1) : drawn);
}

void StandIns::Replace(std::span<std::int16_t> id) {
  while (!id.empty() && id.back() == 0) id = id.first(id.size() - 1);
  if (id.empty()) return;
  Shown& standIn = known_[Shown(id.begin(), id.end())];
  if (standIn.empty()) {
    for (std::size_t at = 0; at + 1 < id.size(); ++at) standIn.push_back(DrawByte(8, false));
    const auto highest = static_cast<unsigned>(id.back());
    standIn.push_back(DrawByte(static_cast<unsigned>(std::bit_width(highest)), true));
  }
  std::ranges::copy(standIn, id.begin());
}

// Each place of a track turns its characters on by a step of its own, so that the same swipe looks the same.
void StandIns::ReplaceTrack(int track, std::size_t block, std::span<std::uint8_t> raw) {
  constexpr unsigned kMostBlocks = 16;
  const auto turned = [](unsigned character, unsigned first, unsigned count, unsigned step) {
    return static_cast<std::uint8_t>(first + (character - first + step) % count);
  };
  for (std::size_t i = block == 0 ? 1 : 0; i < raw.size(); ++i) {  // a header comes first
    const std::size_t place = (static_cast<std::size_t>(track) * kMostBlocks + block) * raw.size() + i;
    const unsigned step = steps_.try_emplace(place, 1 + chance_() % 9).first->second;
    const unsigned mask = track == 1 ? 0x3F : 0x0F;
    const unsigned digits = track == 1 ? 0x10 : 0;
    const unsigned character = raw[i] & mask;
    if (raw[i] == 0) continue;  // beyond the end
    if (character >= digits && character < digits + 10) raw[i] = turned(character, digits, 10, step);
    if (track == 1 && character > 0x20 && character <= 0x3A) raw[i] = turned(character, 0x21, 26, step);
  }
}

Mask::Mask(const HidIdentity& identity, Kept kept, StandIns& standIns)
    : product_(Product::kReader), kept_(kept), standIns_(standIns) {
  for (const Family& family : kFamilies) {
    if (identity.vid != family.vid || identity.pid != family.pid) continue;
    if (family.name == "Magstripe") product_ = Product::kMagstripe;
    if (family.name == "Sonar") product_ = Product::kSonar;
  }
}

Shown Mask::Sent(std::span<const std::uint8_t> report) {
  Shown shown = ShownBytes(report);
  const bool isData = mayStore_ && product_ == Product::kReader;
  if (isData) {
    mayStore_ = false;
    if (!kept_.keys && (command_[0] == kKeysFollow || !IsKnown(command_[0]))) Cover(shown, 1);
    return shown;
  }
  command_.fill(0);
  const auto payload = report.subspan(std::min<std::size_t>(1, report.size()));
  std::copy_n(payload.begin(), std::min(payload.size(), command_.size()), command_.begin());
  mayStore_ = command_[0] <= kHighestStoring || command_[0] == kIdentity || !IsKnown(command_[0]);
  if (product_ != Product::kReader || kept_.keys) return shown;
  if (!IsKnown(command_[0])) Cover(shown, 2);
  if (HasItem(command_)) Cover(shown, 1 + kItemBytes);
  return shown;
}

Shown Mask::Received(std::span<const std::uint8_t> report) {
  Shown shown = ShownBytes(report);
  mayStore_ = false;
  if (product_ == Product::kMagstripe && !kept_.ids) MaskTrack(shown);
  if (product_ != Product::kReader) return shown;
  if (!kept_.keys && !IsKnown(command_[0])) Cover(shown, 1);
  if (!kept_.keys && HasItem(command_)) Cover(shown, 1 + kItemBytes);
  if (!kept_.ids && HasId(command_) && !shown.empty()) standIns_.Replace(std::span(shown).subspan(1));
  return shown;
}

Shown Mask::Input(std::span<const std::uint8_t> report) {
  Shown shown = ShownBytes(report);
  if (!kept_.ids && !shown.empty()) standIns_.Replace(std::span(shown).subspan(1));
  return shown;
}

// "R", two letters and the block in hexadecimal digits, asked for by G, the track, the number of the block.
void Mask::MaskTrack(Shown& shown) {
  constexpr std::size_t kFirst = 4;
  constexpr std::size_t kDigits = 20;
  const std::string command(command_.begin(), command_.end());
  const int track = command[1] - '0';
  const auto block = ParseHex("0" + command.substr(2, 1));
  if (command[0] != 'G' || track < 1 || track > 3 || command.substr(3) != "00" || !block) return;
  if (shown.size() < kFirst + kDigits) return;
  const std::string digits(shown.begin() + kFirst, shown.begin() + kFirst + kDigits);
  auto raw = ParseHex(digits);
  if (!raw) return;
  standIns_.ReplaceTrack(track, block->front(), *raw);
  std::ranges::copy(HexDigits(*raw), shown.begin() + kFirst);
}

}  // namespace tavlyn::sim
