#include "tools/tavlynctl/text_dialect.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "api.h"

namespace tavlyn::ctl {
namespace {

constexpr std::uint16_t kSerialLine = 1;
constexpr std::uint32_t kUsualBaud = 9600;

// At a lower speed a full list of variables does not arrive within the time of a quick read.
bool MayHurry(const Link& link) { return link.kind == LinkKind::kSerial && link.baud >= kUsualBaud; }

// Sets the time-outs of a quick read, which last until the next search; the number of bytes does not matter.
void HurryPort() { SetSerialTimeouts(0, 0, 0); }

// A socket delivers an answer in pieces, and nobody drops the rest of it: so all of it is read here.
bool AnswersOverSocket() {
  constexpr std::string_view kVersion = "\rRFID:DEV.VER\r";
  constexpr int kLooks = 10;  // each an eighth of a second
  WriteSerialPort(kVersion.data(), static_cast<std::uint32_t>(kVersion.size()));
  bool answered = false;
  bool came = true;
  for (int look = 0; look < kLooks && (!answered || came); ++look) {
    std::array<std::uint8_t, 256> bytes{};
    ReadSerialPort(bytes.data(), bytes.size());
    came = bytes[0] != 0;
    answered = answered || std::ranges::find(bytes, '{') != bytes.end();
  }
  return answered;
}

// For the active reader. A version in text clears the error word; the rest of the configuration leaves it
// alone. Over a socket the library never takes an answer as long as a configuration's as complete.
InText ReadOne(const Link& link) {
  GetFlags(nullptr);
  if (ReadCfg() == 1) return InText::kRead;
  const bool answers = GetLastLibErr() == 0 || (link.kind == LinkKind::kEthernet && AnswersOverSocket());
  return answers ? InText::kUnread : InText::kSilent;
}

}  // namespace

std::chrono::seconds SilenceInText(const Link& link) { return std::chrono::seconds(MayHurry(link) ? 7 : 16); }

std::vector<InText> ReadInText(const Link& link) {
  UseAsciiCommandProtocol(1);
  std::vector<InText> states;
  for (std::int16_t index = 0; SetActDev(index) == 1; ++index) {
    if (MayHurry(link)) HurryPort();
    states.push_back(ReadOne(link));
  }
  if (link.kind == LinkKind::kSerial) comConnect();
  for (std::size_t index = 0; link.kind == LinkKind::kSerial && index < states.size(); ++index) {
    if (states[index] != InText::kUnread || SetActDev(static_cast<std::int16_t>(index)) != 1) continue;
    states[index] = ReadOne(link);
  }
  SetActDev(0);
  return states;
}

bool ShortenTextRead(const Link& link) {
  if (link.kind == LinkKind::kEthernet) return GetDevType() != kSerialLine || AnswersOverSocket();
  HurryPort();
  return true;
}

}  // namespace tavlyn::ctl
