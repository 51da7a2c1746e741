// What the family table uses of the magnetic-stripe readers, and what their files share.
#pragma once

#include <cstdint>

#include "core/product.h"
#include "core/state.h"
#include "links/com_search.h"

namespace tavlyn::magstripe {

inline tsSorbaneCfg& ActiveCfg() { return EntryOfActDev().SorbaneBlock.Cfg; }

inline constexpr UsbIdentity kUsbIdentity{kMagstripePair, platform::HidClass::kKeyboard};

// The HID devices, then the COM ports.
bool Search();
bool SearchPorts();
ComSearch PortSearch();
std::uint32_t CheckArrival(const char* path);
// Whether a magnetic-stripe reader answers; wakes up a serial line first.
bool Ping();

// The stored configuration. The reader does not learn that a write has been abandoned.
std::uint32_t ReadCfg();
std::uint32_t WriteCfg();
// Resets the reader to factory defaults, which are then read.
std::uint32_t ResetFactoryDflts();

// The configuration as a text file. Both directions work on the mirror only.
std::uint32_t SaveFile(const char* path);
std::uint32_t LoadFile(const char* path);

// The selected piece of the last swipe as text; the result is the length of that text.
std::uint16_t FetchId(std::uint8_t* buffer, std::int16_t length);
std::uint16_t FetchId32(std::uint8_t* buffer, std::int16_t length);
std::uint32_t FetchQueuedId(std::uint16_t first, std::int16_t second);
std::uint32_t QueuedIdPart(std::int16_t index);

// Beeper, and the LEDs as a tsLEDCtrl. Colours show at once.
std::uint32_t Beep(std::uint8_t count, std::int16_t longBeep);
std::uint32_t GetLedCtrl(std::int16_t* words);
std::uint32_t SetLedCtrl(const std::int16_t* words);

// tsTimeParms: kept by the host in the first configuration slot and never sent. The real inter-key times are
// in the magnetic-stripe configuration.
std::uint32_t GetTimeParms(std::int16_t* words);
std::uint32_t SetTimeParms(const std::int16_t* words);
std::uint16_t* GetKeyTime(KeyTime which);

// The reports of an exchange, for programs: stores a byte of the request; an index of 8
// or above also sends it.
std::uint32_t SetRawByte(std::int16_t index, std::uint8_t value);
std::uint32_t RawReplyByte(std::uint16_t index);

}  // namespace tavlyn::magstripe
