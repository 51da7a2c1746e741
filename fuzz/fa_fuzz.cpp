// A reader on a serial port that speaks frames: its connect succeeds unless bit 7 of the first byte is set,
// and then it answers as it likes. The second byte leaves calls out; the third is the most bytes that arrive
// at once.
#include <array>

#include "fuzz/any_line.h"
#include "fuzz/reader_calls.h"
#include "sim/devices/reader_fa.h"

namespace tavlyn::fuzz {
namespace {

constexpr std::uint16_t kPort = 3;

void ReadPort() {
  std::array<std::uint8_t, 40> bytes{};
  ReadSerialPort(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
  QuickReadSerialPort(bytes.data(), 1);
  WriteSerialPort("\xFA\x01", 2);
  readSerialPort_char(-1);
  quickReadSerialPort_char(3);
}

void Meet(Input input) {
  const std::uint8_t kind = input.Byte();
  const std::uint8_t calls = input.Byte();
  const std::uint8_t piece = input.Byte();
  sim::ReaderFa model((kind & 1) == 0 ? sim::Reader::Plain() : sim::Reader::Plus(3));
  AnyFrameLine line(model, input);
  const Loaded loaded;
  loaded.host.ports.present[kPort] = &line;
  loaded.host.ports.clock = &loaded.host.clock;
  SetConnectProduct(1);
  if ((kind & 0x80) != 0) line.Turn(piece);
  const bool connected = ComConnectPort(kPort, nullptr) == 1;
  Require(connected || (kind & 0x80) != 0);
  line.Turn(piece);
  if (GetDevCnt() > 0) TalkToReader(calls);
  ReadPort();
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Meet({data, size});
  return 0;
}
