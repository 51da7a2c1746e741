#include "reader/ascii.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <string_view>

#include "api.h"
#include "core/openings.h"
#include "core/pause.h"
#include "core/state.h"
#include "links/serial_port.h"
#include "reader/ascii_text.h"
#include "reader/layout.h"

namespace tavlyn::reader {
namespace {

using namespace field;

#define REQUEST(name, text, does) constexpr const char* name = text;
#include "reader/ascii_words.inc"

constexpr std::int16_t kLedsLeftAlone = 255;
constexpr std::uint32_t kStoreTime = 1200;

// What was received: its length, and its text up to the first NUL.
struct Answer {
  std::int32_t count;
  std::string_view text;
};

Answer ReadAnswer(SerialPort& port) {
  auto& reply = shared.buffers.asciiReply;
  reply.fill('\0');
  const std::span<std::uint8_t> room(reinterpret_cast<std::uint8_t*>(reply.data()), reply.size() - 1);
  const auto count = static_cast<std::int32_t>(port.Read(room));
  return {count, reply.data()};
}

bool HasPrompt(std::string_view text) { return text.find(kPrompt) != std::string_view::npos; }

void Begin(SerialPort& port) {
  port.WriteText(kEchoOffPromptOn);
  port.DrainFlush();
}

enum class Sent : std::uint8_t { kNever, kNumber, kCharacter };

struct Key {
  const char* name;  // as in an answer
  FieldId field;
  Sent sent;
  void (*also)(tsCfgSlot& slot,
               std::int16_t value) = nullptr;                // what else a value that was read sets
  std::int16_t (*instead)(const tsCfgSlot& slot) = nullptr;  // what is sent instead of the field
};

void TakeLeds(tsCfgSlot& slot, std::int16_t value) {
  slot[LEDCtrl_bAppCtrlsLED] = value != kLedsLeftAlone ? 1 : 0;
  slot[LEDCtrl_iRedLEDState] = static_cast<std::int16_t>(value & 1);
  slot[LEDCtrl_iGrnLEDState] = static_cast<std::int16_t>(value >> 1 & 1);
  slot[LEDCtrl_bVolatile] = 0;
}

void TakeIdBits(tsCfgSlot& slot, std::int16_t value) {
  if (value == 0 || value > 64) slot[IDBitCnts_iIDBitCnt] = 1;
}

void TakeTotalBits(tsCfgSlot& slot, std::int16_t value) {
  if (value < 26) slot[IDBitCnts_iTotalBitCnt] = 26;
}

template <std::size_t word>
void TakeParityBits(tsCfgSlot& slot, std::int16_t value) {
  slot.ExtBytes[word] = static_cast<std::uint16_t>(value);
}

void TakeEndOfLine(tsCfgSlot& slot, std::int16_t value) { slot[CfgFlags_bNoUseELChar] = value == 0 ? 1 : 0; }

void TakeFacDigits(tsCfgSlot& slot, std::int16_t value) { slot[CfgFlags_bFixLenDsp] = value > 0 ? 1 : 0; }

std::int16_t LedStates(const tsCfgSlot& slot) {
  const int states = (slot[LEDCtrl_iGrnLEDState] & 1) << 1 | (slot[LEDCtrl_iRedLEDState] & 1);
  return slot[LEDCtrl_bAppCtrlsLED] == 0 ? kLedsLeftAlone : static_cast<std::int16_t>(states);
}

// The character sent at a place: lead characters first, then trail characters. With an impossible lead count
// every place is sent as 0.
template <int place>
std::int16_t CharacterAt(const tsCfgSlot& slot) {
  const int lead = std::max<int>(slot[IDDispParms2_iLeadChrCnt], 0);
  if (lead > kLeadAndTrail) return 0;
  const Record record = place < lead ? kIDDispParms2 : kIDDispParms3;
  return slot.record[record][static_cast<std::size_t>(place < lead ? place : place - lead) + 1];
}

constexpr std::array kKeys = {
#define KEY(key, id, form, ...) Key{.name = key, .field = id, .sent = Sent::form, __VA_ARGS__},
#include "reader/ascii_words.inc"
};
constexpr const Key& kLeds = kKeys.front();

// Fields for which the dialect has no key.
struct FixedValue {
  FieldId field;
  std::int16_t value;
};
constexpr std::array kFixedValues = {
    FixedValue{TimeParms_iUSBKeyPrsTm, 20}, FixedValue{TimeParms_iUSBKeyRlsTm, 20},
    FixedValue{BprRlyCtrl_bVolatile, 1},    FixedValue{CfgFlags3_bUse64Bit, 1},
    FixedValue{CfgFlags2_bUseInvDataF, 0},  FixedValue{CfgFlags2_bUseLeadChrs, 1},
};

// The characters after the lead characters are the trail characters.
void TakeTrailCharacters(tsCfgSlot& slot) {
  const RecordWords& leads = slot.record[kIDDispParms2];
  RecordWords& trails = slot.record[kIDDispParms3];
  const int lead = std::clamp<int>(leads[0], 0, kLeadAndTrail);
  for (int at = 0; at < kLeadAndTrail; ++at) {
    const bool taken = lead + at < kLeadAndTrail;
    trails[static_cast<std::size_t>(at) + 1] =
        taken ? leads[static_cast<std::size_t>(lead + at) + 1] : std::int16_t{0};
  }
}

void TakeVariables(std::string_view text, tsDevEntry& entry, tsCfgSlot& slot) {
  for (const Key& key : kKeys) {
    const auto value = static_cast<std::int16_t>(AsciiQuery(text, key.name));
    slot[key.field] = value;
    if (key.also != nullptr) key.also(slot, value);
  }
  TakeTrailCharacters(slot);
  entry.LUID = static_cast<std::uint16_t>(AsciiQuery(text, ":dev.luid"));
  for (const FixedValue& fixed : kFixedValues) slot[fixed.field] = fixed.value;
}

// "{a.b.c}", the firmware version as one word.
bool TakeVersion(const Answer& answer, tsDevEntry& entry) {
  constexpr std::int32_t kShortest = 10;
  const std::size_t brace = answer.text.find('{');
  unsigned a = 0;
  int b = 0;
  int c = 0;
  if (answer.count <= kShortest || !HasPrompt(answer.text) || brace == std::string_view::npos) return false;
  if (std::sscanf(answer.text.data() + brace, "{%X.%d.%d}", &a, &b, &c) != 3) return false;
  const unsigned high = a << 4 | static_cast<unsigned>(b);
  entry.DID = static_cast<std::uint16_t>(high << 4 | static_cast<unsigned>(c));
  return true;
}

// Only the low byte of a character is sent.
void SendValue(const Key& key, const tsCfgSlot& slot) {
  char format[40];
  const char* const conversion = key.sent == Sent::kCharacter ? "'\\x%02hhX'" : "%d";
  std::snprintf(format, sizeof format, "%s=%s", key.name + 1, conversion);
  AsciiSet(format, key.instead != nullptr ? key.instead(slot) : slot[key.field]);
}

// An answer "{age,x,y,bits;id}", collected byte by byte; empty unless all of it arrives.
std::string_view CollectId(SerialPort& port) {
  auto& reply = shared.buffers.asciiReply;
  constexpr int kPasses = 300;
  constexpr std::size_t kMost = 200;
  constexpr std::uint32_t kBetween = 10;
  reply.fill('\0');
  std::size_t count = 0;
  bool whole = false;
  for (int pass = 0; pass < kPasses && count < kMost && !whole; ++pass) {
    std::uint8_t byte = 0;
    if (static_cast<std::int32_t>(port.Read({&byte, 1})) > 0) reply[count++] = static_cast<char>(byte);
    const std::string_view text(reply.data(), count);
    whole = text.find('{') != std::string_view::npos && text.find('}') != std::string_view::npos;
    Pause(kBetween);
  }
  return whole ? std::string_view(reply.data(), count) : std::string_view();
}

}  // namespace

std::uint32_t AsciiReadConfig() {
  constexpr std::int32_t kShortest = 700;
  tsDevEntry& entry = EntryOfActDev();
  SerialPort* port = entry.pSerialPort;
  if (port == nullptr) return 0;
  tsCfgSlot& slot = entry.ActiveSlot();
  Begin(*port);
  port->WriteText(kListVariables);
  const Answer variables = ReadAnswer(*port);
  const bool ok = variables.count > kShortest && HasPrompt(variables.text);
  // An answer that is too short is used all the same.
  TakeVariables(variables.text, entry, slot);
  port->Flush();
  port->WriteText(kVersion);
  if (TakeVersion(ReadAnswer(*port), entry)) {
    entry.LastLibErr = 0;
    slot.bCfgLoaded = 1;
    slot.bDirtyDisp = slot.bDirtyFmt = slot.bDirtyTime = slot.bDirtyExt = slot.bDirtySep = 0;
    entry.bLUIDDirty = 0;
  }
  port->DrainFlush();
  return ok ? 1 : 0;
}

std::uint32_t AsciiWriteConfig() {
  tsDevEntry& entry = EntryOfActDev();
  entry.LastLibErr = 0;
  SerialPort* port = entry.pSerialPort;
  if (port == nullptr) return 0;
  tsCfgSlot& slot = entry.ActiveSlot();
  Begin(*port);
  for (const Key& key : kKeys) {
    if (key.sent != Sent::kNever) SendValue(key, slot);
  }
  slot[CfgFlags_bFixLenDsp] = slot[IDDispParms_iFACDispLen] > 0 ? 1 : 0;
  port->DrainFlush();
  return 1;
}

std::uint16_t AsciiGetId(std::uint8_t* buffer, std::int16_t length) {
  constexpr std::int16_t kAsciiIdBytes = 8;
  constexpr int kFewestBits = 11;
  tsDevEntry& entry = EntryOfActDev();
  SerialPort* port = entry.pSerialPort;
  if (length < kAsciiIdBytes || port == nullptr || !port->IsOpen()) {
    entry.LastLibErr = length < kAsciiIdBytes ? TAVLYN_ERR_ASCII_LENGTH : TAVLYN_ERR_ASCII_PORT;
    return 0;
  }
  port->Flush();
  port->WriteText(kId);
  const std::string_view answer = CollectId(*port);
  port->DrainFlush();
  if (answer.empty()) {
    entry.LastLibErr = TAVLYN_ERR_ASCII_ANSWER;
    return 0;
  }
  const std::size_t brace = answer.find('{');
  unsigned age = 0;
  int ignored = 0;
  unsigned alsoIgnored = 0;
  int bits = 0;
  unsigned long long id = 0;
  if (answer.find(';', brace) == std::string_view::npos) return 0;
  if (std::sscanf(answer.data() + brace, "{%X,%d,%X,%d;%llX}", &age, &ignored, &alsoIgnored, &bits, &id) < 5)
    return 0;
  // Fewer bits are not a card, and an ID older than the hold time counts as gone.
  if (bits < kFewestBits || static_cast<std::int64_t>(age) > entry.ActiveSlot()[TimeParms_iIDHoldTO])
    return 0;
  for (int at = 0; at < kAsciiIdBytes; ++at) buffer[at] = static_cast<std::uint8_t>(id >> 8 * at);
  return static_cast<std::uint16_t>(bits);
}

void AsciiReset() {
  SerialPort* port = EntryOfActDev().pSerialPort;
  if (port != nullptr) port->WriteText(kResetConfig);
  Pause(kStoreTime);
  if (port != nullptr) port->DrainFlush();
}

void AsciiBeep(std::uint8_t count, bool longBeep) {
  AsciiSet(longBeep ? "out.beep.long=%d" : "out.beep.short=%d", count);
}

void AsciiSetLeds() {
  SendValue(kLeds, EntryOfActDev().ActiveSlot());
  if (SerialPort* port = EntryOfActDev().pSerialPort; port != nullptr) port->DrainFlush();
}

}  // namespace tavlyn::reader

using namespace tavlyn;
using namespace tavlyn::reader;

std::uint32_t UseAsciiCommandProtocol(std::uint16_t on) {
  if (!ReaderIsActive()) return shared.UnsupportedValue;
  shared.reader.AsciiProtocol = static_cast<std::int16_t>(on);
  return 1;
}
