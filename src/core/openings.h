// How an export begins: through the family table, for readers only, or unchecked on EntryOfActDev().
#pragma once

#include <cstdint>

#include "core/lock.h"
#include "core/product.h"
#include "core/state.h"
#include "core/trace.h"

namespace tavlyn {

// The active device's row of the family table, or null when no device is active or its kind is not known.
inline const Product* ActiveProduct() {
  return ActiveInRange() ? ProductOf(EntryOfActDev().ProductKind) : nullptr;
}

// The routine of an entry's kind for an operation, or null when the kind is not known or has no such routine.
template <typename Routine>
Routine RoutineOf(const tsDevEntry& entry, Routine Product::*operation) {
  const Product* product = ProductOf(entry.ProductKind);
  return product != nullptr ? product->*operation : nullptr;
}

// The same for the active device; also null without one.
template <typename Routine>
Routine ActiveRoutine(Routine Product::*operation) {
  return ActiveInRange() ? RoutineOf(EntryOfActDev(), operation) : nullptr;
}

// The usual opening: calls the active device's routine, or returns UnsupportedValue without one. The result
// has 16 bits, zero-extended.
template <typename Result, typename... Parameters, typename... Arguments>
std::uint32_t Dispatch(Result (*Product::*operation)(Parameters...), Arguments... arguments) {
  const auto routine = ActiveRoutine(operation);
  return routine != nullptr ? static_cast<std::uint16_t>(routine(arguments...)) : shared.UnsupportedValue;
}

inline bool ReaderIsActive() { return ActiveInRange() && EntryOfActDev().ProductKind == kReader; }
inline bool MagstripeIsActive() { return ActiveInRange() && EntryOfActDev().ProductKind == kMagstripe; }
inline bool SonarIsActive() { return ActiveInRange() && EntryOfActDev().ProductKind == kSonar; }
inline bool PlusReaderIsActive() { return ReaderIsActive() && EntryOfActDev().PlusState == kPlusReader; }

// UnsupportedValue for the few exports that sign-extend it.
inline std::uint32_t UnsupportedSigned() {
  return static_cast<std::uint32_t>(static_cast<std::int16_t>(shared.UnsupportedValue));
}

// A configuration record of the active device, whatever its kind, as eight words.
inline std::uint32_t GetActiveRecord(Record record, std::int16_t* words) {
  const auto get = ActiveRoutine(&Product::getRecord);
  return get != nullptr ? get(record, words) : shared.UnsupportedValue;
}

inline std::uint32_t SetActiveRecord(Record record, const std::int16_t* words) {
  const auto set = ActiveRoutine(&Product::setRecord);
  return set != nullptr ? set(record, words) : shared.UnsupportedValue;
}

// Reading and writing the configuration of a device of any kind, under the lock, for connects, exports and
// files. Both deliberately return 0, not UnsupportedValue, when no device is active.
inline std::uint32_t ReadCfgLocked() {
  const Locked lock;
  return ActiveInRange() ? Dispatch(&Product::readCfg) : 0;
}

// Traced, because a write changes the device; a file load shows in the trace as a write.
inline std::uint32_t WriteCfgLocked() {
  constexpr const char* kTag = "WriteCfg";
  LogLine(kTag, "ENTER");
  std::uint32_t result = 0;
  {
    const Locked lock;
    if (ActiveInRange()) result = Dispatch(&Product::writeCfg);
  }
  if (result != 0) LogLine(kTag, kSuccess);
  LogLine(kTag, "EXIT");
  return result;
}

// Which stored configuration of a plus reader the record calls act on. Only a plus reader has several.
inline std::uint16_t HighestConfig() {
  return PlusReaderIsActive() ? EntryOfActDev().MaxConfig : std::uint16_t{0};
}

inline std::uint8_t ActiveConfig() {
  return PlusReaderIsActive() ? EntryOfActDev().ActConfig : std::uint8_t{0};
}

// Switches on the host only; a separate command switches the reader.
inline bool UseConfig(std::uint8_t index) {
  if (!PlusReaderIsActive() || index > EntryOfActDev().MaxConfig) return false;
  EntryOfActDev().ActConfig = index;
  return true;
}

}  // namespace tavlyn
