#include "magstripe/exchange.h"

#include <algorithm>
#include <cstring>

#include "core/pause.h"
#include "core/state.h"
#include "hid/report_channel.h"
#include "links/serial_port.h"

namespace tavlyn::magstripe {
namespace {

constexpr std::int32_t kReportBytes = kPacket;
constexpr std::uint8_t kPacketEnd = 0x0D;
constexpr std::size_t kMostPairs = 10;

constexpr std::uint32_t kPause = 2;
constexpr std::uint32_t kStoreTime = 200;
constexpr std::uint32_t kBeforeSecondTry = 25;

// The reader stores to its memory before it answers these.
bool IsStore(const char* text) { return text[0] == 'F' && (text[1] == 'D' || text[1] == 'W'); }

void BuildRequest(const char* text) {
  shared.magstripe.request.fill(0);
  std::copy_n(text, std::min(std::strlen(text), kPacket), shared.magstripe.request.begin() + 1);
  shared.magstripe.request.back() = kPacketEnd;
}

// A serial port returns the number of bytes, yet only 1 counts as sent, as for a report. A whole packet
// therefore looks unsent and no serial reader is ever found; this is deliberate.
bool Send() {
  if (!OnSerialPort())
    return WriteFeatureReport(kReportBytes, shared.ActDev, shared.magstripe.request.data());
  SerialPort* port = EntryOfActDev().pSerialPort;
  return port != nullptr && port->Write(std::span(shared.magstripe.request).subspan(1)) == 1;
}

bool Fetch() {
  if (!OnSerialPort()) return ReadFeatureReport(kReportBytes, shared.ActDev, shared.magstripe.reply.data());
  EntryOfActDev().pSerialPort->Read(std::span(shared.magstripe.reply).subspan(1));
  return true;
}

bool SendAndFetch(const char* text, Reply& reply) {
  BuildRequest(text);
  if (!Send()) return false;
  shared.magstripe.reply.fill(0);
  if (!OnSerialPort()) Pause(kPause);
  if (IsStore(text)) Pause(kStoreTime);
  if (!Fetch()) return false;
  std::copy(shared.magstripe.reply.begin() + 1, shared.magstripe.reply.end(), reply.begin());
  return true;
}

// A packet's text and its terminator.
using PacketText = std::array<char, kPacket + 1>;

PacketText TextOf(const Command& command, Letters letters, std::span<const std::uint8_t> bytes) {
  PacketText text{};
  std::size_t used = 0;
  const auto add = [&](char character) {
    if (used + 1 < text.size()) text[used++] = character;
  };
  const char* letter = letters.begin();
  for (const char* at = command.name; *at != '\0'; ++at) {
    add(*at == '?' && letter != letters.end() ? *letter++ : *at);
  }
  for (std::size_t at = 0; at < command.sent; ++at) {
    const std::uint8_t byte = at < bytes.size() ? bytes[at] : std::uint8_t{0};
    add(kDigits[byte >> 4]);
    add(kDigits[byte & 15]);
  }
  return text;
}

int DigitOf(std::uint8_t character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  return -1;
}

// Two characters as one hexadecimal conversion takes them: a single digit is enough.
std::uint8_t PairOf(std::uint8_t first, std::uint8_t second) {
  const int high = DigitOf(first);
  const int low = DigitOf(second);
  if (high < 0) return 0;
  return static_cast<std::uint8_t>(low < 0 ? high : high * 16 + low);
}

}  // namespace

bool Exchange(const char* text, Reply& reply) {
  reply.fill(0);
  if (SendAndFetch(text, reply) && reply[0] == 'R') return true;
  Pause(kPause);
  return false;
}

bool Exchange(const Command& command, Reply& reply, Letters letters, std::span<const std::uint8_t> bytes) {
  const PacketText text = TextOf(command, letters, bytes);
  return Exchange(text.data(), reply) &&
         std::memcmp(reply.data(), command.begins, std::strlen(command.begins)) == 0;
}

bool Ask(const Command& command, Payload& bytes, Letters letters) {
  bytes.fill(0);
  Reply reply;
  if (!Exchange(command, reply, letters)) return false;
  ParseHexPairs(std::span(reply).subspan(command.at), std::span(bytes).first(command.received));
  return true;
}

bool Tell(const Command& command, Letters letters, std::span<const std::uint8_t> bytes) {
  Reply ignored;
  return Exchange(command, ignored, letters, bytes);
}

bool Identify(Reply& reply) {
  if (Exchange(kIdentify, reply)) return true;
  Pause(kBeforeSecondTry);
  return Exchange(kIdentify, reply);
}

void ParseHexPairs(std::span<const std::uint8_t> text, std::span<std::uint8_t> bytes) {
  std::ranges::fill(bytes, std::uint8_t{0});
  const std::size_t pairs = std::min({text.size() / 2, bytes.size(), kMostPairs});
  for (std::size_t pair = 0; pair < pairs; ++pair) {
    const std::uint8_t first = text[2 * pair];
    if (static_cast<std::int8_t>(first) < '0') return;
    bytes[pair] = PairOf(first, text[2 * pair + 1]);
  }
}

}  // namespace tavlyn::magstripe
