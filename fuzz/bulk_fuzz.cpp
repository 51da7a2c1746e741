// A reader behind the endpoints of a bulk device.
#include "fuzz/framed_reader.h"
#include "sim/devices/reader_fa.h"

namespace tavlyn::fuzz {
namespace {

void Meet(Input input) {
  FramedReader<sim::ReaderFa> reader(input);
  reader.model.inPieces = true;
  const Loaded loaded;
  loaded.host.usb.loads = loaded.host.usb.present = true;
  loaded.host.usb.device = &reader.line;
  reader.Meet([] { return USBConnect(nullptr); });
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Meet({data, size});
  return 0;
}
