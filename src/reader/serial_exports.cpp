// Exports that only serial readers answer.
#include "api.h"
#include "core/openings.h"
#include "reader/exchange.h"

using namespace tavlyn;

std::uint32_t ReadBaudRate() {
  constexpr std::uint32_t kNoDevice = 0xFFFFFFFF;
  constexpr std::uint32_t kNoAnswer = 65535;
  if (!ActiveInRange()) return kNoDevice;
  const Outcome baud = Exchange(command::kReadBaud);
  return baud.xfer == Xfer::kDone ? baud.reply[0] : kNoAnswer;
}

std::uint32_t WriteBaudRate(std::uint16_t code) {
  if (!ActiveInRange()) return shared.UnsupportedValue;
  return Exchange(command::kWriteBaud, {static_cast<std::uint8_t>(code)}).xfer == Xfer::kDone ? 1 : 0;
}

std::uint32_t UseAsciiCommandProtocol(std::uint16_t on) {
  if (!ReaderIsActive()) return shared.UnsupportedValue;
  shared.reader.AsciiProtocol = static_cast<std::int16_t>(on);
  return 1;
}
