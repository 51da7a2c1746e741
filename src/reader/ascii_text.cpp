#include "reader/ascii_text.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "core/state.h"
#include "core/text.h"
#include "links/serial_port.h"

namespace tavlyn::reader {
namespace {

constexpr std::size_t kLineLength = 80;
constexpr std::size_t kAnswerLength = 12;

template <typename Number>
std::int32_t Parse(std::string_view text, const char* conversion) {
  Number number = 0;
  return Scan(text, conversion, number) ? static_cast<std::int32_t>(number) : 0;
}

// A value is written 'c', '\xHH', False, True, 0xHH or in decimal.
std::int32_t ValueOf(std::string_view line) {
  constexpr std::size_t kNone = std::string_view::npos;
  const std::size_t quoted = line.find("='");
  if (quoted != kNone) {
    const std::size_t at = quoted + 2;
    if (at >= line.size()) return 0;
    if (line[at] != '\\') return static_cast<std::uint8_t>(line[at]);
    return at + 2 < line.size() ? Parse<unsigned>(line.substr(at + 2), "%X") : 0;
  }
  const std::size_t equals = line.find('=');
  if (equals == kNone) return 0;
  const std::string_view value = line.substr(equals + 1);
  if (value.find("False") != kNone) return 0;
  if (value.find("True") != kNone) return 1;
  return value.find("0x") != kNone ? Parse<unsigned>(value, "%X") : Parse<int>(value, "%d");
}

}  // namespace

std::int32_t AsciiQuery(std::string_view text, std::string_view key) {
  const std::size_t start = text.find(key);
  if (start == std::string_view::npos) return 0;
  const std::size_t end = text.find('\r', start);
  if (end == std::string_view::npos) return 0;
  return ValueOf(text.substr(start, std::min(end - start, kLineLength)));
}

void AsciiSet(const char* format, std::int32_t value) {
  SerialPort* port = EntryOfActDev().pSerialPort;
  if (port == nullptr || !port->IsOpen()) return;
  char whole[81];
  char text[81];
  std::snprintf(whole, sizeof whole, "\rrfid:%s\r", format);
  std::snprintf(text, sizeof text, whole, value);
  port->WriteText(text);
  // The answer is read only to get it out of the way.
  std::array<std::uint8_t, kAnswerLength> answer;
  port->Read(answer);
}

}  // namespace tavlyn::reader
