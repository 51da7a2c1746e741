// What the family table and the floors above use of the card readers.
#pragma once

#include <cstdint>
#include <span>

#include "core/mirror.h"
#include "core/product.h"
#include "links/com_search.h"

namespace tavlyn::reader {

inline constexpr UsbIdentity kUsbIdentity{kReaderPair, platform::HidClass::kHid, true};

// Tries the links that DevTypeSrch allows, one after the other, until one has found something.
bool Search();
// The same for serial ports only.
bool SearchPorts();
ComSearch PortSearch();
std::uint32_t CheckArrival(const char* path);
// Whether the reader answers at all.
bool Ping();

// Finds out whether the active device is a plus reader (true) or a plain one. Sets PlusState, MaxConfig,
// ActConfig and the card type of the active slot. A reader once known as plain is not asked again until its
// entry is rebuilt.
bool Classify();

// Every stored configuration, from the highest to the lowest. A read of a plus reader ends with its card type
// list; a write sends the blocks whose dirty flags are set.
std::uint32_t ReadCfg();
std::uint32_t WriteCfg();
// Makes the reader load its factory configuration and reads it back.
std::uint32_t ResetFactoryDflts();
// The stored banks of a plus reader.
std::uint32_t ResetUserDflts();
std::uint32_t SaveUserDflts();

// The configuration records of the host's mirror.
std::uint32_t GetRecord(Record record, std::int16_t* words);
std::uint32_t SetRecord(Record record, const std::int16_t* words);
// Words of the mirror that belong to no record.
void SetOption(std::int32_t tsCfgSlot::*option, std::int32_t value);
void SetSepData(std::span<const std::uint8_t, kSepFldBytes> bytes);

// Returns the bit count of the card on the reader and puts its ID into the buffer; 0 without a card or after
// a failure.
std::uint16_t FetchId(std::uint8_t* buffer, std::int16_t length);
std::uint16_t FetchId32(std::uint8_t* buffer, std::int16_t length);
// IDs that the reader queued while nobody polled.
std::uint32_t FetchQueuedId(std::uint16_t first, std::int16_t second);
std::uint32_t QueuedIdPart(std::int16_t index);

std::uint32_t Beep(std::uint8_t count, std::int16_t longBeep);

// One word of a plus reader's firmware; 0 for a plain reader or a failed exchange. Over reports the answer is
// also kept in FWVersion.
std::uint32_t QueryFirmwareWord(std::int16_t cpu, std::int16_t index);
// FWVersion as read at connect.
std::uint32_t FirmwareVersion(std::uint16_t cpu, std::uint16_t index);

// For commands that an application spells out itself: stores a byte of the command; index 8 or above also
// sends it.
std::uint32_t SetRawByte(std::int16_t index, std::uint8_t value);
std::uint32_t RawReplyByte(std::uint16_t index);

}  // namespace tavlyn::reader
