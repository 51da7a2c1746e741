// What the family table uses of the sonar sensors.
#pragma once

#include <cstdint>

#include "core/product.h"

namespace tavlyn::sonar {

inline constexpr UsbIdentity kUsbIdentity{kSonarPair, platform::HidClass::kKeyboard};

bool Search();
std::uint32_t CheckArrival(const char* path);

// Configuration: the four records and the identity, from and to the device, and its stored defaults.
std::uint32_t ReadCfg();
// Sends what has changed, and a commit in any case.
std::uint32_t WriteCfg();
std::uint32_t ResetFactoryDflts();
std::uint32_t ResetUserDflts();
std::uint32_t SaveUserDflts();

// The records as a text file of "key = value" lines. A load calls the record sets and returns 1 for any file
// that opens.
std::uint32_t SaveFile(const char* path);
std::uint32_t LoadFile(const char* path);

// The range of the nearest object in the form of an ID.
std::uint16_t FetchId(std::uint8_t* buffer, std::int16_t length);

// The first three words of a tsLEDCtrl, which LEDFlags holds as bits.
std::uint32_t GetLedCtrl(std::int16_t* words);
std::uint32_t SetLedCtrl(const std::int16_t* words);

}  // namespace tavlyn::sonar
