// Exports that only serial readers answer.
#include "api.h"
#include "core/openings.h"
#include "reader/fa_frames.h"
#include "reader/transactions.h"

using namespace tavlyn;

std::uint32_t ReadBaudRate() {
  constexpr std::uint32_t kNoDevice = 0xFFFFFFFF;
  constexpr std::uint32_t kNoAnswer = 65535;
  if (!ActiveInRange()) return kNoDevice;
  if (!OnSerialPort()) return kNoAnswer;
  FaFrame frame(command::kReadBaud, 0, 0);
  return FaXfer(command::kReadBaud, frame) ? frame.data[0] : kNoAnswer;
}

std::uint32_t WriteBaudRate(std::uint16_t code) {
  if (!ActiveInRange()) return UnsupportedValue;
  if (!OnSerialPort()) return 0;
  FaFrame frame(command::kWriteBaud, static_cast<std::uint8_t>(code), 0);
  return FaXfer(command::kWriteBaud, frame) ? 1 : 0;
}

std::uint32_t UseAsciiCommandProtocol(std::uint16_t on) {
  if (!ReaderIsActive()) return UnsupportedValue;
  AsciiProtocol = static_cast<std::int16_t>(on);
  return 1;
}
