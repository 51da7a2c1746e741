// The three ways in which an export begins. Unchecked exports, the third way, use ActiveEntry() as it is.
#pragma once

#include <cstdint>

#include "core/product.h"
#include "core/state.h"

namespace tavlyn {

// The active device's table, or null when no device is active or its kind is not known.
inline const Product* ActiveProduct() {
  return ActiveInRange() ? ProductOf(ActiveEntry().ProductKind) : nullptr;
}

// The usual opening: the active device's routine for the operation, UnsupportedValue without a device or a
// routine. The result has 16 bits, zero-extended.
template <typename Result, typename... Parameters, typename... Arguments>
std::uint32_t Dispatch(Result (*Product::*routine)(Parameters...), Arguments... arguments) {
  const Product* product = ActiveProduct();
  if (product == nullptr || product->*routine == nullptr) return UnsupportedValue;
  return static_cast<std::uint16_t>((product->*routine)(arguments...));
}

inline bool ReaderIsActive() { return ActiveInRange() && ActiveEntry().ProductKind == kReader; }
inline bool MagstripeIsActive() { return ActiveInRange() && ActiveEntry().ProductKind == kMagstripe; }
inline bool SonarIsActive() { return ActiveInRange() && ActiveEntry().ProductKind == kSonar; }
inline bool PlusReaderIsActive() { return ReaderIsActive() && ActiveEntry().PlusState == kPlusReader; }

// UnsupportedValue for the few exports that sign-extend it.
inline std::uint32_t UnsupportedSigned() {
  return static_cast<std::uint32_t>(static_cast<std::int16_t>(UnsupportedValue));
}

}  // namespace tavlyn
