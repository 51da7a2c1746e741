#include "magstripe/transactions.h"

#include <algorithm>
#include <cstring>

#include "core/pause.h"
#include "core/state.h"
#include "hid/report_channel.h"
#include "links/serial_port.h"

namespace tavlyn {
namespace {

constexpr std::int32_t kPayload = kSorbanePacket;
constexpr std::uint8_t kPacketEnd = 0x0D;
constexpr std::size_t kMostPairs = 10;

constexpr std::uint32_t kPause = 2;
constexpr std::uint32_t kStoreTime = 200;
constexpr std::uint32_t kBeforeSecondTry = 25;
constexpr std::uint32_t kWakeTime = 30;

// The reader stores to its memory before it answers these.
bool IsStore(const char* text) { return text[0] == 'F' && (text[1] == 'D' || text[1] == 'W'); }

void BuildRequest(const char* text) {
  Sorbane.request.fill(0);
  std::copy_n(text, std::min(std::strlen(text), kSorbanePacket), Sorbane.request.begin() + 1);
  Sorbane.request.back() = kPacketEnd;
}

// Only a count of one sends the exchange on, so that a serial port, which counts bytes, never gets an answer
// to a packet that it took whole. Deliberate: no serial reader may be found where none was before.
bool Send() {
  if (!SorbaneOnSerialPort()) return WriteFeatureReport(kPayload, ActDev, Sorbane.request.data());
  SerialPort* port = EntryOfActDev().pSerialPort;
  return port != nullptr && port->Write(std::span(Sorbane.request).subspan(1)) == 1;
}

bool Fetch() {
  if (!SorbaneOnSerialPort()) return ReadFeatureReport(kPayload, ActDev, Sorbane.reply.data());
  EntryOfActDev().pSerialPort->Read(std::span(Sorbane.reply).subspan(1));
  return true;
}

bool Exchange(const char* text, std::uint8_t* reply) {
  BuildRequest(text);
  if (!Send()) return false;
  Sorbane.reply.fill(0);
  if (!SorbaneOnSerialPort()) Pause(kPause);
  if (IsStore(text)) Pause(kStoreTime);
  if (!Fetch()) return false;
  std::copy(Sorbane.reply.begin() + 1, Sorbane.reply.end(), reply);
  return true;
}

// A packet's text and its terminator.
using PacketText = std::array<char, kSorbanePacket + 1>;

PacketText TextOf(const SorbaneCommand& command, SorbaneLetters letters,
                  std::span<const std::uint8_t> bytes) {
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
    add(kSorbaneDigits[byte >> 4]);
    add(kSorbaneDigits[byte & 15]);
  }
  return text;
}

int DigitOf(std::uint8_t character) {
  if (character >= '0' && character <= '9') return character - '0';
  if (character >= 'A' && character <= 'F') return character - 'A' + 10;
  if (character >= 'a' && character <= 'f') return character - 'a' + 10;
  return -1;
}

// Two characters as one hexadecimal conversion takes them: one digit will do.
std::uint8_t PairOf(std::uint8_t first, std::uint8_t second) {
  const int high = DigitOf(first);
  const int low = DigitOf(second);
  if (high < 0) return 0;
  return static_cast<std::uint8_t>(low < 0 ? high : high * 16 + low);
}

}  // namespace

bool SorbaneOnSerialPort() { return EntryOfActDev().LinkKind == kBySerialPort; }

std::uint32_t SorbaneTransact(const char* text, std::uint8_t* reply) {
  std::fill_n(reply, kSorbanePacket, std::uint8_t{0});
  if (Exchange(text, reply) && reply[0] == 'R') return 1;
  Pause(kPause);
  return 0;
}

bool SorbaneQuery(const SorbaneCommand& command, SorbaneReply& reply, SorbaneLetters letters,
                  std::span<const std::uint8_t> bytes) {
  const PacketText text = TextOf(command, letters, bytes);
  return SorbaneTransact(text.data(), reply.data()) != 0 &&
         std::memcmp(reply.data(), command.begins, std::strlen(command.begins)) == 0;
}

bool SorbaneTell(const SorbaneCommand& command, SorbaneLetters letters, std::span<const std::uint8_t> bytes) {
  SorbaneReply ignored;
  return SorbaneQuery(command, ignored, letters, bytes);
}

bool SorbaneAsk(const SorbaneCommand& command, std::span<std::uint8_t> bytes, SorbaneLetters letters) {
  SorbaneReply reply;
  const bool answered = SorbaneQuery(command, reply, letters);
  const auto from =
      answered ? std::span<const std::uint8_t>(reply).subspan(command.at) : std::span<const std::uint8_t>();
  ParseHexPairs(from, bytes);
  return answered;
}

bool SorbaneIdentify(SorbaneReply& reply) {
  if (SorbaneQuery(sorbane::kIdentify, reply)) return true;
  Pause(kBeforeSecondTry);
  return SorbaneQuery(sorbane::kIdentify, reply);
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

bool SorbanePing() {
  const bool serial = SorbaneOnSerialPort();
  SerialPort* port = EntryOfActDev().pSerialPort;
  if (serial) {
    constexpr std::array<std::uint8_t, 2> kWake = {'\r', '\r'};
    Pause(kWakeTime);
    if (port != nullptr) {
      port->Write(kWake);
      port->Flush();
    }
    Pause(kWakeTime);
    if (port != nullptr) port->ClearInput();
  }
  SorbaneReply reply;
  const bool answered = SorbaneIdentify(reply);
  if (serial) Pause(kPause);
  return answered;
}

}  // namespace tavlyn
