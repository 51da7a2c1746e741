// A reader on a serial port that speaks frames; and the port is read as it is.
#include <array>

#include "fuzz/framed_reader.h"
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
  FramedReader<sim::ReaderFa> reader(input);
  const Loaded loaded;
  loaded.host.ports.present[kPort] = &reader.line;
  loaded.host.ports.clock = &loaded.host.clock;
  reader.Meet([] { return ComConnectPort(kPort, nullptr); });
  ReadPort();
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Meet({data, size});
  return 0;
}
