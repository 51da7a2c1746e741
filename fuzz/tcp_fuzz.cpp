// A reader behind an Ethernet adapter that passes its frames on.
#include "fuzz/framed_reader.h"
#include "sim/devices/ethernet_adapter.h"

namespace tavlyn::fuzz {
namespace {

constexpr std::int16_t kEthernet = 2;

void Meet(Input input) {
  FramedReader<sim::EthernetAdapter> reader(input);
  const Loaded loaded;
  loaded.host.sockets.accepts = [](platform::Address) { return true; };
  loaded.host.sockets.device = &reader.line;
  SetDevTypeSrch(kEthernet);
  SetIpPort(10, 0, 0, 5, 10001);
  reader.Meet([] { return USBConnect(nullptr); });
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Meet({data, size});
  return 0;
}
