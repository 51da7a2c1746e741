#include "sim/devices/reader_ascii.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <iterator>
#include <string_view>
#include <utility>

#include "sim/devices/reader_actions.h"

namespace tavlyn::sim {
namespace {

constexpr std::string_view kStart = "rfid:";
constexpr std::string_view kPrompt = "Orvantis>";
constexpr std::uint8_t kFrameClass = 0xFA;
constexpr char kEndOfLine = '\r';
constexpr std::size_t kLongestLine = 256;

enum class Form : std::uint8_t { kFlag, kNumber, kCharacter };

// Where a variable is in the blocks of a configuration.
struct Variable {
  std::string_view key;
  Form form;
  std::uint8_t block;
  std::uint8_t byte;  // from 0
  std::uint8_t shift;
  std::uint8_t mask;
  int scale = 1;
  // A flag of the format block that follows from the value: set if the value is not 0, or if it is.
  std::uint8_t flagWhenSet = 0;
  std::uint8_t flagWhenZero = 0;
};

constexpr Variable Flag(std::string_view key, std::uint8_t block, std::uint8_t byte, std::uint8_t bit) {
  return {key, Form::kFlag, block, byte, bit, 1};
}
constexpr Variable Number(std::string_view key, std::uint8_t block, std::uint8_t byte, int scale = 1) {
  return {key, Form::kNumber, block, byte, 0, 0xFF, scale};
}
constexpr Variable Character(std::string_view key, std::uint8_t block, std::uint8_t byte) {
  return {key, Form::kCharacter, block, byte, 0, 0xFF};
}

constexpr std::size_t kFlagsByte = 7;  // of the format block

// A host takes the first match in the list, so a key that is the beginning of another comes before it.
constexpr Variable kVariables[] = {
    Number("time.hold", 1, 2, 50),
    Number("time.lo", 1, 3, 50),
    Flag("out.beep", 2, 0, 3),
    Flag("out.relay", 2, 0, 2),
    Flag("wieg.qual", 0, 7, 1),
    Number("wieg.id.bits", 0, 3),
    Number("wieg.qual.bits", 0, 4),
    Character("chr.gone.1", 2, 2),
    Character("chr.gone.2", 2, 3),
    Character("chr.1", 2, 5),
    Character("chr.2", 2, 6),
    Character("chr.3", 2, 7),
    {"chr.count.lead", Form::kNumber, 2, 4, 0, 0x03},
    {"chr.count.trail", Form::kNumber, 2, 4, 4, 0x03},
    {"chr.eol", Form::kCharacter, 0, 6, 0, 0xFF, 1, 0, 0x20},
    {"disp.fac.digits", Form::kNumber, 0, 0, 0, 0xFF, 1, 0x01, 0},
    {"chr.fac", Form::kCharacter, 0, 5, 0, 0xFF, 1, 0x10, 0},
    Number("disp.id.digits", 0, 1),
    Flag("op.sdk", 0, 7, 7),
    Flag("disp.fac.send", 0, 7, 3),
    Flag("op.cont", 0, 7, 6),
    Flag("disp.fac.strip", 0, 7, 2),
    Flag("op.beep", 2, 1, 4),
    Flag("disp.id.hex", 2, 1, 2),
    Flag("wieg.rev.bytes", 2, 1, 6),
    Flag("wieg.rev.bits", 2, 1, 5),
    Flag("wieg.inv.bits", 2, 1, 3),
};

// Counts of parity bits: up to 15 in the format block, the rest in the extension block.
struct Parity {
  std::string_view key;
  std::uint8_t shift;
  std::uint8_t extension;
};
constexpr Parity kParities[] = {{"wieg.strip.lead.bits", 0, 0}, {"wieg.strip.trail.bits", 4, 1}};
constexpr std::size_t kParityByte = 2;
constexpr int kNibble = 15;

constexpr int kLedsLeftAlone = 255;
constexpr std::uint8_t kHostHasLeds = 0x02;

void Store(std::uint8_t& byte, std::uint8_t shift, std::uint8_t mask, int value) {
  const int field = mask << shift;
  byte = static_cast<std::uint8_t>((byte & ~field) | ((value & mask) << shift));
}

void SetBits(std::uint8_t& byte, std::uint8_t bits, bool on) {
  byte = static_cast<std::uint8_t>(on ? byte | bits : byte & ~bits);
}

int Get(const Settings& settings, const Variable& row) {
  return (settings.blocks[row.block][row.byte] >> row.shift & row.mask) * row.scale;
}

void Set(Settings& settings, const Variable& row, int value) {
  if (row.form == Form::kFlag) value = value != 0 ? 1 : 0;
  Store(settings.blocks[row.block][row.byte], row.shift, row.mask, value / row.scale);
  std::uint8_t& flags = settings.blocks[0][kFlagsByte];
  SetBits(flags, row.flagWhenSet, value != 0);
  SetBits(flags, row.flagWhenZero, value == 0);
}

int Get(const Settings& settings, const Parity& row) {
  return (settings.blocks[0][kParityByte] >> row.shift & kNibble) + settings.blocks[3][row.extension];
}

void Set(Settings& settings, const Parity& row, int value) {
  const int near = std::clamp(value, 0, kNibble);
  Store(settings.blocks[0][kParityByte], row.shift, kNibble, near);
  settings.blocks[3][row.extension] = static_cast<std::uint8_t>(value - near);
}

int GetLeds(const Settings& settings) {
  const Block& display = settings.blocks[2];
  return (display[1] & kHostHasLeds) == 0 ? kLedsLeftAlone : display[0] & 3;
}

void SetLeds(Settings& settings, int value) {
  Block& display = settings.blocks[2];
  SetBits(display[1], kHostHasLeds, value != kLedsLeftAlone);
  if (value != kLedsLeftAlone) Store(display[0], 0, 3, value);
}

template <typename... Values>
std::string Format(const char* format, Values... values) {
  std::array<char, 128> text{};
  std::snprintf(text.data(), text.size(), format, values...);
  return text.data();
}

std::string ValueText(Form form, int value) {
  switch (form) {
    case Form::kFlag: return value != 0 ? "True" : "False";
    case Form::kCharacter:
      return value > ' ' && value < 0x7F && value != '\\' && value != '\'' ? Format("'%c'", value)
                                                                           : Format("'\\x%02X'", value);
    case Form::kNumber: break;
  }
  return std::to_string(value);
}

int Parse(std::string_view text, int base) {
  int value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value, base);
  return value;
}

int ValueOf(std::string_view text) {
  if (text.starts_with("'\\x")) return Parse(text.substr(3), 16);
  if (text.starts_with("'")) return text.size() > 1 ? static_cast<std::uint8_t>(text[1]) : 0;
  if (text == "True" || text == "False") return text == "True" ? 1 : 0;
  return text.starts_with("0x") ? Parse(text.substr(2), 16) : Parse(text, 10);
}

std::string Line(std::string_view key, const std::string& value) {
  return "RFID:" + std::string(key) + "=" + value + "\r\n";
}

std::string ListVariables(ReaderState& state) {
  const Settings& settings = state.Working();
  std::string list = Line("out.led", std::to_string(GetLeds(settings)));
  for (const Variable& row : kVariables) list += Line(row.key, ValueText(row.form, Get(settings, row)));
  for (const Parity& row : kParities) list += Line(row.key, std::to_string(Get(settings, row)));
  list += Line("dev.luid", Format("0x%04X", static_cast<unsigned>(state.luid)));
  list += Line("dev.model", state.model);
  for (const auto& [key, text] :
       {std::pair{"dev.serial", kSerialNumber}, std::pair{"dev.platform", kPlatform},
        std::pair{"dev.firmware", kFullFirmwareVersion}}) {
    list += Line(key, state.texts[text]);
  }
  return list;
}

std::string Version(const ReaderState& state) {
  return Format("{%04X.%d.%d}\r\n", static_cast<unsigned>(state.did >> 8), state.did >> 4 & 0x0F,
                state.did & 0x0F);
}

std::string CardText(const ReaderState& state) {
  std::uint64_t id = 0;
  for (std::size_t i = 0; i < std::min<std::size_t>(state.card.id.size(), sizeof id); ++i) {
    id |= static_cast<std::uint64_t>(state.card.id[i]) << (8 * i);
  }
  return Format("{%04X,1,0001,%d;%llX}\r\n", 0U, static_cast<int>(state.card.bits),
                static_cast<unsigned long long>(id));
}

// The code of the same beep in the other dialects.
constexpr std::uint8_t kLongBeep = 0x80;

}  // namespace

ReaderAscii::ReaderAscii(std::shared_ptr<Reader> reader) : reader_(std::move(reader)), frames_(reader_) {}

void ReaderAscii::Silence() {
  line_.clear();
  frames_.Silence();
}

void ReaderAscii::TakeByte(std::uint8_t byte) {
  if (speaksFrames && (frames_.InFrame() || byte == kFrameClass)) {
    frames_.Receive({&byte, 1});
    PassOn(frames_);
    return;
  }
  if (echoes) Send({&byte, 1});
  if (byte != kEndOfLine) {
    if (line_.size() < kLongestLine) line_ += static_cast<char>(byte);
    return;
  }
  TakeLine();
  line_.clear();
}

void ReaderAscii::TakeLine() {
  const bool addressed = line_.size() > kStart.size() &&
                         std::equal(kStart.begin(), kStart.end(), line_.begin(), [](char small, char any) {
                           return any == small || any == small - 'a' + 'A';
                         });
  if (!addressed) return;
  const std::string command = line_.substr(kStart.size());
  const Bytes bytes(command.begin(), command.end());
  if (faults.TakeCommandRefusal(bytes)) return;
  std::string answer = Answer(command);
  if (faults.TakeReplyRefusal(bytes)) return;
  if (const auto scripted = faults.TakeAnswer(bytes)) return Send(*scripted);
  if (prompts) answer += kPrompt;
  Send(Bytes(answer.begin(), answer.end()));
}

std::string ReaderAscii::Answer(const std::string& command) {
  ReaderState& state = reader_->state;
  if (command == "VAR") return ListVariables(state);
  if (command == "DEV.VER") return Version(state);
  if (command == "QID.ID") return CardText(state);
  const std::size_t equals = command.find('=');
  if (command == "CFG.RESET") {
    ResetToFactory(state);
  } else if (equals != std::string::npos) {
    Assign(command.substr(0, equals), command.substr(equals + 1));
  } else {
    ++state.counters.unknownCommands;
  }
  return "OK\r";
}

void ReaderAscii::Assign(const std::string& key, const std::string& text) {
  ReaderState& state = reader_->state;
  const int value = ValueOf(text);
  const auto hasKey = [&](const auto& row) { return row.key == key; };
  const auto* variable = std::find_if(std::begin(kVariables), std::end(kVariables), hasKey);
  const auto* parity = std::find_if(std::begin(kParities), std::end(kParities), hasKey);
  // This dialect has no commit: what is set is stored.
  for (Settings* bank : {&state.Active().working, &state.Active().stored}) {
    if (variable != std::end(kVariables)) Set(*bank, *variable, value);
    if (parity != std::end(kParities)) Set(*bank, *parity, value);
    if (key == "out.led") SetLeds(*bank, value);
  }
  if (key == "cmd.echo") echoes = value != 0;
  if (key == "cmd.prompt") prompts = value != 0;
  if (key == "out.beep.short") Beep(state, static_cast<std::uint8_t>(value));
  if (key == "out.beep.long") Beep(state, static_cast<std::uint8_t>(value | kLongBeep));
}

}  // namespace tavlyn::sim
