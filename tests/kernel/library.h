// The library under test, bound by name as an application might.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "api.h"

namespace tavlyn::kernel {

struct Library {
  decltype(&::USBConnect) connect;
  decltype(&::USBDisconnect) disconnect;
  decltype(&::SetDevTypeSrch) searchLink;
  decltype(&::SetConnectProduct) searchProducts;
  decltype(&::GetDevCnt) count;
  decltype(&::SetActDev) select;
  decltype(&::GetDevName) name;
  decltype(&::GetDID) did;
  decltype(&::GetLastLibErr) error;
  decltype(&::GetFlags) flags;
  decltype(&::GetTimeParms) times;
  decltype(&::GetMaxConfig) maxConfig;
  decltype(&::GetSerialNumber) serialNumber;
  decltype(&::getPartNumberString) partNumber;
  decltype(&::GetVidPidVendorName) vendor;
  decltype(&::GetActiveID) activeId;
  decltype(&::sorbaneGetTrackData) track;
  decltype(&::GetObjRangeInfo) range;
};

// A failed check if the library does not load or lacks a name. Searches are limited to HID devices: the
// machine's one serial port is its console.
bool LoadLibrary(const char* path, Library& library);

struct CardRead {
  std::uint16_t bits;
  std::vector<std::uint8_t> id;
};

// Asks the active reader for its card, after the pause during which the library would not ask it.
CardRead ReadCard(const Library& library);

}  // namespace tavlyn::kernel
