// Which device is which, and which one is active.
#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "api.h"
#include "core/state.h"
#include "core/version.h"
#include "links/serial_port.h"

using namespace tavlyn;

namespace {

constexpr std::uint32_t kNoPort = 999;
constexpr std::size_t kNameRoom = 511;

// The interface class of keyboards as it lies in memory, deliberately not that of HID devices.
constexpr std::array<std::uint8_t, 16> kKeyboardGuid = {0xC3, 0x96, 0x4B, 0x88, 0xEF, 0x56, 0xD1, 0x11,
                                                        0xBC, 0x8C, 0x00, 0xA0, 0xC9, 0x14, 0x05, 0xDD};

}  // namespace

std::int16_t GetDevCnt() { return shared.DevCnt; }
std::int16_t GetActDev() { return shared.ActDev; }

std::uint32_t SetActDev(std::int16_t index) { return Activate(index) ? 1 : 0; }

std::uint32_t GetDevByLUID(std::uint16_t luid, std::int16_t start) {
  constexpr std::uint32_t kNone = 0xFFFFFFFF;
  if (start < 0) return kNone;
  for (std::int16_t index = start; index < shared.DevCnt; ++index) {
    if (DevTable[index].LUID == luid) return static_cast<std::uint32_t>(index);
  }
  return kNone;
}

std::uint32_t GetDevName(char* name) {
  if (!ActiveInRange()) return shared.UnsupportedValue;
  const tsDevEntry& entry = EntryOfActDev();
  const bool serial = entry.LinkKind == kBySerialPort;
  if (name != nullptr) {
    std::memset(name, 0, kNameRoom);
    // A serial name may fill the buffer to its last character, without a terminator.
    std::memcpy(name, entry.DevName,
                std::min(std::strlen(entry.DevName), serial ? kNameRoom : kNameRoom - 1));
  }
  if (!serial) return kNoPort;
  return entry.pSerialPort != nullptr ? entry.pSerialPort->PortNum() : 0;
}

std::uint32_t orv_GetDevName(char* name) { return GetDevName(name); }

std::uint8_t getDevName_char(std::int16_t index) {
  if (!ActiveInRange() || index < 0 || index >= static_cast<std::int16_t>(sizeof EntryOfActDev().DevName))
    return 0;
  return static_cast<std::uint8_t>(EntryOfActDev().DevName[index]);
}

std::uint16_t GetDevType() { return EntryOfActDev().LinkKind; }
std::uint16_t orv_GetDevType() { return GetDevType(); }
std::uint32_t GetProduct() { return shared.DevCnt < 1 ? 0 : EntryOfActDev().ProductKind; }
std::uint32_t GetDID() { return EntryOfActDev().DID; }
std::uint32_t GetLUID() { return EntryOfActDev().LUID; }
std::uint32_t GetSN() { return EntryOfActDev().SN; }

std::uint32_t SetLUID(std::uint16_t luid) {
  EntryOfActDev().LUID = luid;
  EntryOfActDev().bLUIDDirty = 1;
  return 1;
}

std::uint32_t GetHIDGuid(std::uint8_t* guid) {
  if (guid != nullptr) std::ranges::copy(kKeyboardGuid, guid);
  return 1;
}

std::uint32_t GetLibVersion(std::uint16_t* major, std::uint16_t* minor, std::uint16_t* build) {
  if (major != nullptr) *major = kVersionMajor;
  if (minor != nullptr) *minor = kVersionMinor;
  if (build != nullptr) *build = kVersionBuild;
  return 1;
}

std::uint16_t getLibraryVersion_Major() { return kVersionMajor; }
std::uint16_t getLibraryVersion_Minor() { return kVersionMinor; }
std::uint16_t getLibraryVersion_Build() { return kVersionBuild; }
const char* getLibraryVersion_Beta() { return ""; }

std::uint8_t getPartNumberString_char(std::int16_t index) {
  if (index == 0) {
    shared.buffers.partNumber.fill('\0');
    if (ActiveInRange())
      std::string_view(EntryOfActDev().PartNumber)
          .copy(shared.buffers.partNumber.data(), shared.buffers.partNumber.size() - 1);
  }
  if (index < 0 || static_cast<std::size_t>(index) >= shared.buffers.partNumber.size()) return 0;
  return static_cast<std::uint8_t>(shared.buffers.partNumber[static_cast<std::size_t>(index)]);
}
