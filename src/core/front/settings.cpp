// Where a connect looks and how failures are reported: plain variables that survive every connect.
#include <algorithm>

#include "api.h"
#include "core/openings.h"

using namespace tavlyn;

namespace {

bool IsPort(std::uint16_t number) { return number >= 1 && number <= platform::kHighestCom; }

}  // namespace

std::uint32_t SetConnectProduct(std::uint32_t mask) {
  shared.search.ConnectMask = mask;
  return 1;
}

std::uint32_t SetDevTypeSrch(std::int16_t link) {
  if (link < kAllLinks || link > kEthernet) return 0;
  shared.search.DevTypeSrch = link;
  return 1;
}

std::uint32_t SetComSrchRange(std::uint16_t a, std::uint16_t b) {
  if (!IsPort(a) || !IsPort(b)) return 0;
  shared.search.ComSrchLo = std::min(a, b);
  shared.search.ComSrchHi = std::max(a, b);
  return 1;
}

std::uint32_t VirtualComSearchRange(std::uint32_t a, std::uint32_t b) {
  const auto low = static_cast<std::uint16_t>(a);
  const auto high = static_cast<std::uint16_t>(b);
  const bool off = low == 0 && high == 0;
  if (!off && !(low < high && IsPort(low) && IsPort(high))) return 0;
  shared.search.VComSrchHi = high;
  shared.search.VComSrchLo = low;
  return 1;
}

std::uint32_t SetIpPort(std::uint8_t a, std::uint8_t b, std::uint8_t c, std::uint8_t d, std::uint16_t port) {
  shared.search.SrchIpAddr = {a, b, c, d};
  shared.search.SrchIpPort = port;
  return 1;
}

void SetUnsupportedProductErrorCode(std::uint16_t value) { shared.UnsupportedValue = value; }
std::uint32_t GetUnsupportedProductErrorCode() { return shared.UnsupportedValue; }

std::uint32_t SetComLinux(std::uint64_t /*value*/) { return 0; }
std::uint16_t GetRawRepDataI(std::uint8_t* /*buffer*/, std::uint16_t /*length*/) { return 0; }

std::uint32_t GetLastLibErr() { return ActiveInRange() ? EntryOfActDev().LastLibErr : UnsupportedSigned(); }
