// A reader behind the endpoints of a bulk device: unless bit 7 of the first byte is set its connect succeeds,
// and then it answers as it likes. The second byte leaves calls out; the third is the most bytes that arrive
// at once.
#include "fuzz/any_line.h"
#include "fuzz/reader_calls.h"
#include "sim/devices/reader_fa.h"

namespace tavlyn::fuzz {
namespace {

void Meet(Input input) {
  const std::uint8_t kind = input.Byte();
  const std::uint8_t calls = input.Byte();
  const std::uint8_t piece = input.Byte();
  sim::ReaderFa model((kind & 1) == 0 ? sim::Reader::Plain() : sim::Reader::Plus(3));
  model.inPieces = true;
  AnyFrameLine line(model, input);
  const Loaded loaded;
  loaded.host.usb.loads = loaded.host.usb.present = true;
  loaded.host.usb.device = &line;
  SetConnectProduct(1);
  if ((kind & 0x80) != 0) line.Turn(piece);
  const bool connected = USBConnect(nullptr) == 1;
  Require(connected || (kind & 0x80) != 0);
  line.Turn(piece);
  if (GetDevCnt() > 0) TalkToReader(calls);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Meet({data, size});
  return 0;
}
