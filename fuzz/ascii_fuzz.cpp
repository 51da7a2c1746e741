// A reader on a serial port that speaks text: after the connect it answers each line with the bytes up to the
// next NUL. The first byte leaves calls out; the second is the most bytes that arrive at once.
#include "fuzz/any_line.h"
#include "fuzz/reader_calls.h"
#include "sim/devices/reader_ascii.h"

namespace tavlyn::fuzz {
namespace {

constexpr std::uint16_t kPort = 3;

void Meet(Input input) {
  const std::uint8_t calls = input.Byte();
  const std::uint8_t piece = input.Byte();
  sim::ReaderAscii model(sim::Reader::Plain());
  AnyTextLine line(model, input);
  const Loaded loaded;
  loaded.host.ports.present[kPort] = &line;
  loaded.host.ports.clock = &loaded.host.clock;
  SetConnectProduct(1);
  Require(ComConnectPort(kPort, nullptr) == 1);
  Require(UseAsciiCommandProtocol(1) == 1);
  line.Turn(piece);
  ReadCfg();
  TalkToReader(calls);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Meet({data, size});
  return 0;
}
