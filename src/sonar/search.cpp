// The search for sonar sensors.
#include "api.h"
#include "hid/arrival.h"
#include "hid/hid_search.h"
#include "sonar/product.h"

namespace tavlyn::sonar {
namespace {

void AddSensor(const char* path, std::int32_t row) {
  tsDevEntry* entry = NextHidEntry();
  if (entry == nullptr) return;
  entry->SonarBlock.bOpened = 1;
  entry->hDev = OpenDevice(path);
  CountHidEntry(*entry, kSonar, path, row);
}

}  // namespace

bool Search() {
  const std::int16_t start = shared.DevCnt;
  shared.SearchErr = 0;
  if (SearchAllows(kUsb)) SearchHidDevices(kUsbIdentity, AddSensor);
  Activate(static_cast<std::int16_t>(shared.DevCnt - 1));
  return shared.DevCnt != start;
}

std::uint32_t CheckArrival(const char* path) {
  // Deliberately names entry 0.
  return tavlyn::CheckArrival(path, {.path = kSonarPair, .device = kUsbIdentity, .namesFirstEntry = true});
}

}  // namespace tavlyn::sonar
