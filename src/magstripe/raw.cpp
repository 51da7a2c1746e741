// The reports of an exchange, byte by byte, for programs.
#include "core/state.h"
#include "hid/report_channel.h"
#include "magstripe/exchange.h"
#include "magstripe/product.h"

namespace tavlyn::magstripe {
namespace {

constexpr int kRawBytes = 10;
constexpr int kSendsFrom = 8;
constexpr std::uint32_t kBeyond = 2;

}  // namespace

std::uint32_t SetRawByte(std::int16_t index, std::uint8_t value) {
  if (index >= 0 && index < kRawBytes) shared.magstripe.request[static_cast<std::size_t>(index)] = value;
  if (index < kSendsFrom) return 0;
  shared.magstripe.request[0] = 0;
  if (OnSerialPort()) return 0;
  constexpr auto kPayload = static_cast<std::int32_t>(kPacket);
  if (!WriteFeatureReport(kPayload, shared.ActDev, shared.magstripe.request.data())) return 0;
  shared.magstripe.reply.fill(0);
  return ReadFeatureReport(kPayload, shared.ActDev, shared.magstripe.reply.data()) ? 1 : 0;
}

std::uint32_t RawReplyByte(std::uint16_t index) {
  return index < kRawBytes ? shared.magstripe.reply[index] : kBeyond;
}

}  // namespace tavlyn::magstripe
