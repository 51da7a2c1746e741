#include "sim/line_place.h"

#include <algorithm>
#include <utility>

#include "sim/devices/ethernet_adapter.h"
#include "sim/devices/magstripe.h"
#include "sim/devices/reader_ascii.h"
#include "sim/devices/reader_fa.h"
#include "sim/words.h"

namespace tavlyn::sim {
namespace {

constexpr std::uint16_t kHighestPort = 256;

std::optional<LinePlace> ParseCom(const std::string& text) {
  const std::size_t colon = text.find(':');
  const bool ascii = colon != std::string::npos;
  if (ascii && text.substr(colon) != ":ascii") return std::nullopt;
  const auto number = ParseNumber<std::uint16_t>(text.substr(3, ascii ? colon - 3 : colon));
  if (!number || *number < 1 || *number > kHighestPort) return std::nullopt;
  return LinePlace{ascii ? LineKind::kComAscii : LineKind::kCom, *number, {}, false};
}

std::optional<LinePlace> ParseAddress(const std::string& text) {
  LinePlace place{LineKind::kEthernet, 0, {}, false};
  std::size_t at = 0;
  for (std::size_t octet = 0; octet < place.ip.size(); ++octet) {
    const std::size_t end = text.find(octet < 3 ? '.' : ':', at);
    if (end == std::string::npos) return std::nullopt;
    const auto value = ParseNumber<std::uint8_t>(text.substr(at, end - at));
    if (!value) return std::nullopt;
    place.ip[octet] = *value;
    at = end + 1;
  }
  const auto port = ParseNumber<std::uint16_t>(text.substr(at));
  if (!port || *port == 0) return std::nullopt;
  place.number = *port;
  return place;
}

}  // namespace

std::optional<LinePlace> ParseLinePlace(const std::string& text) {
  std::string small = text;
  std::ranges::transform(small, small.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  if (small == "bulk") return LinePlace{LineKind::kBulk, 0, {}, false};
  if (small == "acm") return LinePlace{LineKind::kAcm, 0, {}, false};
  return small.starts_with("com") ? ParseCom(small) : ParseAddress(small);
}

// A port is one port whatever is spoken on it; an address is one adapter whatever its port. The kernel
// numbers virtual ports.
bool Collide(const LinePlace& one, const LinePlace& other) {
  const auto isCom = [](const LinePlace& place) {
    return place.kind == LineKind::kCom || place.kind == LineKind::kComAscii;
  };
  if (isCom(one) && isCom(other)) return one.number == other.number;
  return one.kind == other.kind && one.ip == other.ip && one.kind != LineKind::kAcm;
}

std::unique_ptr<FaultyLine> MakeLine(const LinePlace& place, const std::shared_ptr<Model>& device) {
  if (auto magstripe = std::dynamic_pointer_cast<Magstripe>(device)) {
    return std::make_unique<MagstripeLine>(std::move(magstripe));
  }
  auto reader = std::dynamic_pointer_cast<Reader>(device);
  switch (place.kind) {
    case LineKind::kComAscii: return std::make_unique<ReaderAscii>(std::move(reader));
    case LineKind::kEthernet: return std::make_unique<EthernetAdapter>(std::move(reader));
    case LineKind::kCom:
    case LineKind::kBulk:
    case LineKind::kAcm: break;
  }
  auto line = std::make_unique<ReaderFa>(std::move(reader));
  line->inPieces = place.kind == LineKind::kBulk;
  return line;
}

}  // namespace tavlyn::sim
