// The family table: what each kind of product can do. A null entry is an operation that the kind lacks and
// for which the dispatch answers UnsupportedValue. "What can this product do?" is answered by reading its
// table.
#pragma once

#include <cstdint>
#include <span>

#include "core/fields.h"
#include "platform/platform.h"

namespace tavlyn {

// The inter-key times of tsTimeParms, where a kind keeps them outside its records.
enum class KeyTime : std::uint8_t { kPress, kRelease };

// Under which USB identities devices of a kind appear.
struct UsbIdentity {
  platform::HidIds pair;
  platform::HidClass listedAs = platform::HidClass::kHid;
  bool byVidPidTable = false;  // also under those of the VID/PID table
};

struct Product {
  std::uint32_t kind = 0;
  UsbIdentity usb;
  bool hasTunnel = false;                // its reports may travel through the socket
  bool keyTimesInRecord = false;         // the inter-key times are words of tsTimeParms alone
  bool hasIdByBytes = true;              // getActiveID and getActiveID32; without them they answer 0
  const char* portFailureTag = nullptr;  // traced when a single port has nothing; null: not at all

  // Searches the links that DevTypeSrch allows and adds what it finds to the table.
  bool (*search)() = nullptr;
  // Searches the COM ports of the range alone.
  bool (*searchPorts)() = nullptr;
  bool (*classify)() = nullptr;  // asks the device whether it is a plain or a plus one

  std::uint32_t (*readCfg)() = nullptr;
  std::uint32_t (*writeCfg)() = nullptr;
  std::uint32_t (*resetFactoryDflts)() = nullptr;
  std::uint32_t (*resetUserDflts)() = nullptr;
  std::uint32_t (*saveUserDflts)() = nullptr;
  // Configuration as a text file.
  std::uint32_t (*saveFile)(const char* path) = nullptr;
  std::uint32_t (*loadFile)(const char* path) = nullptr;
  // Bit count of what lies on the device, its bytes in the buffer; length counts as 0 when the buffer is
  // null.
  std::uint16_t (*getActiveId)(std::uint8_t* buffer, std::int16_t length) = nullptr;
  std::uint16_t (*getActiveId32)(std::uint8_t* buffer, std::int16_t length) = nullptr;
  std::uint32_t (*beep)(std::uint8_t count, std::int16_t longBeep) = nullptr;
  bool (*answers)() = nullptr;  // a ping came back
  // One firmware word asked of the device, 0 for none; and the words read at connect.
  std::uint32_t (*queryFirmwareWord)(std::int16_t cpu, std::int16_t index) = nullptr;
  std::uint32_t (*firmwareVersion)(std::uint16_t cpu, std::uint16_t index) = nullptr;

  // IDs that were read while nobody polled, and commands that the library has no name for.
  std::uint32_t (*getQueuedId)(std::uint16_t first, std::int16_t second) = nullptr;
  std::uint32_t (*queuedIdPart)(std::int16_t index) = nullptr;
  std::uint32_t (*setRawPayload)(std::int16_t index, std::uint8_t value) = nullptr;
  std::uint32_t (*rawReplyByte)(std::uint16_t index) = nullptr;
  // Looks at a device that has just been plugged in and adds it to the table.
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

// In the order in which a connect searches them. Filled in core/front/families.cpp: the one name by which a
// floor reaches what stands above it.
extern const std::span<const Product* const> kProducts;

// The table of a kind, or null.
inline const Product* ProductOf(std::uint32_t kind) {
  for (const Product* product : kProducts) {
    if (product->kind == kind) return product;
  }
  return nullptr;
}

}  // namespace tavlyn
