#include "tests/kernel/library.h"

#include <chrono>
#include <thread>

#include "tests/kernel/bind.h"
#include "tests/kernel/checks.h"

namespace tavlyn::kernel {

bool LoadLibrary(const char* path, Library& library) {
  void* file = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (file == nullptr) {
    Check(false, std::string("the library loads: ") + dlerror());
    return false;
  }
  const bool bound =
      Bind(file, "USBConnect", library.connect) && Bind(file, "USBDisconnect", library.disconnect) &&
      Bind(file, "SetDevTypeSrch", library.searchLink) &&
      Bind(file, "SetConnectProduct", library.searchProducts) && Bind(file, "GetDevCnt", library.count) &&
      Bind(file, "SetActDev", library.select) && Bind(file, "GetDevName", library.name) &&
      Bind(file, "GetDID", library.did) && Bind(file, "GetLastLibErr", library.error) &&
      Bind(file, "GetFlags", library.flags) && Bind(file, "GetTimeParms", library.times) &&
      Bind(file, "GetMaxConfig", library.maxConfig) && Bind(file, "GetSerialNumber", library.serialNumber) &&
      Bind(file, "getPartNumberString", library.partNumber) &&
      Bind(file, "GetVidPidVendorName", library.vendor) && Bind(file, "GetActiveID", library.activeId) &&
      Bind(file, "sorbaneGetTrackData", library.track) && Bind(file, "GetObjRangeInfo", library.range);
  Check(bound, "the library has every function that is called here");
  if (bound) library.searchLink(0);
  return bound;
}

CardRead ReadCard(const Library& library) {
  std::this_thread::sleep_for(std::chrono::milliseconds(250));
  CardRead read{0, std::vector<std::uint8_t>(8, 0xEE)};
  read.bits = library.activeId(read.id.data(), 8);
  return read;
}

}  // namespace tavlyn::kernel
