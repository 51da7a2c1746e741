#include "core/wire.h"

#include <algorithm>
#include <array>

#include "core/state.h"
#include "core/trace.h"

namespace tavlyn {
namespace {

// A line of the trace has room for them.
constexpr std::size_t kMostBytes = 512;

const char* NameOf(std::uint32_t product) {
  switch (product) {
    case kReader: return "reader";
    case kMagstripe: return "magstripe";
    case kSonar: return "sonar";
    default: return "device";
  }
}

}  // namespace

void LogWire(std::uint32_t product, Direction direction, std::span<const std::uint8_t> bytes,
             std::size_t shown) {
  if (!shared.trace.bWire || shared.trace.MarkerFunc == nullptr) return;
  constexpr const char* kDigits = "0123456789ABCDEF";
  std::array<char, 3 * kMostBytes + 1> text{};
  auto* at = text.begin();
  for (std::size_t i = 0; i < std::min(bytes.size(), kMostBytes); ++i) {
    *at++ = ' ';
    *at++ = i < shown ? kDigits[bytes[i] >> 4] : '*';
    *at++ = i < shown ? kDigits[bytes[i] & 15] : '*';
  }
  const char* more = bytes.empty() ? " nothing" : bytes.size() > kMostBytes ? " ..." : "";
  LogLine("wire", "%s %c%s%s", NameOf(product), static_cast<char>(direction), text.data(), more);
}

}  // namespace tavlyn
