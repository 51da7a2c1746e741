// The family table: what each kind of product can do. A null routine is an operation that the kind lacks and
// for which a dispatch returns UnsupportedValue.
#pragma once

#include <cstdint>
#include <span>

#include "core/fields.h"
#include "platform/platform.h"

namespace tavlyn {

// The inter-key times of tsTimeParms, which some kinds keep outside their records.
enum class KeyTime : std::uint8_t { kPress, kRelease };

// The USB identities of a kind of devices.
struct UsbIdentity {
  platform::HidIds pair;
  platform::HidClass listedAs = platform::HidClass::kHid;
  bool byVidPidTable = false;  // also those of the VID/PID table
};

struct Product {
  std::uint32_t kind = 0;
  UsbIdentity usb;
  bool hasTunnel = false;                // its reports may travel through the socket
  bool keyTimesInRecord = false;         // the inter-key times are words of tsTimeParms only
  bool hasIdByBytes = true;              // false: getActiveID and getActiveID32 return 0
  const char* portFailureTag = nullptr;  // traced when a single port has nothing; null: no trace

  // Searches the links that DevTypeSrch allows and adds what it finds to the table.
  bool (*search)() = nullptr;
  // Searches only the COM ports of the range.
  bool (*searchPorts)() = nullptr;
  bool (*classify)() = nullptr;  // asks the device whether it is a plain or a plus reader

  std::uint32_t (*readCfg)() = nullptr;
  std::uint32_t (*writeCfg)() = nullptr;
  std::uint32_t (*resetFactoryDflts)() = nullptr;
  std::uint32_t (*resetUserDflts)() = nullptr;
  std::uint32_t (*saveUserDflts)() = nullptr;
  // Configuration as a text file.
  std::uint32_t (*saveFile)(const char* path) = nullptr;
  std::uint32_t (*loadFile)(const char* path) = nullptr;
  // Returns the bit count of the current ID and puts its bytes into the buffer, which is never null.
  std::uint16_t (*getActiveId)(std::uint8_t* buffer, std::int16_t length) = nullptr;
  std::uint16_t (*getActiveId32)(std::uint8_t* buffer, std::int16_t length) = nullptr;
  std::uint32_t (*beep)(std::uint8_t count, std::int16_t longBeep) = nullptr;
  bool (*answers)() = nullptr;  // whether the device answers a ping
  // One firmware word: asked of the device, 0 for none; and as read at connect.
  std::uint32_t (*queryFirmwareWord)(std::int16_t cpu, std::int16_t index) = nullptr;
  std::uint32_t (*firmwareVersion)(std::uint16_t cpu, std::uint16_t index) = nullptr;

  // IDs that were read while nobody polled, and raw commands.
  std::uint32_t (*getQueuedId)(std::uint16_t first, std::int16_t second) = nullptr;
  std::uint32_t (*queuedIdPart)(std::int16_t index) = nullptr;
  std::uint32_t (*setRawPayload)(std::int16_t index, std::uint8_t value) = nullptr;
  std::uint32_t (*rawReplyByte)(std::uint16_t index) = nullptr;
  // Adds a device that has just been plugged in to the table, if it is of this kind.
  std::uint32_t (*checkArrival)(const char* path) = nullptr;
  // The active device's word for an inter-key time; null for kinds that have none or keep it in the record.
  std::uint16_t* (*keyTime)(KeyTime which) = nullptr;

  // A configuration record as eight words; UnsupportedValue for one that the kind lacks.
  std::uint32_t (*getRecord)(Record record, std::int16_t* words) = nullptr;
  std::uint32_t (*setRecord)(Record record, const std::int16_t* words) = nullptr;
};

// kReaderPair and kReaderProduct and so on; what a family can do is defined in its own folder.
#define PRODUCT(name, kind, vid, pid)                                \
  inline constexpr platform::HidIds k##name##Pair{0x##vid, 0x##pid}; \
  extern const Product k##name##Product;
#include "core/products.inc"
#undef PRODUCT

// In the order in which a connect searches them. Defined in core/front/families.cpp: the only name by which a
// floor reaches one above it.
extern const std::span<const Product* const> kProducts;

// The row of a kind, or null.
inline const Product* ProductOf(std::uint32_t kind) {
  for (const Product* product : kProducts) {
    if (product->kind == kind) return product;
  }
  return nullptr;
}

}  // namespace tavlyn
