// A configuration record of the active device, whatever its kind, as eight words.
#pragma once

#include <cstdint>

#include "core/openings.h"

namespace tavlyn {

inline std::uint32_t GetActiveRecord(Record record, std::int16_t* words) {
  const Product* product = ActiveProduct();
  if (product == nullptr || product->getRecord[record] == nullptr) return UnsupportedValue;
  return product->getRecord[record](words);
}

inline std::uint32_t SetActiveRecord(Record record, const std::int16_t* words) {
  const Product* product = ActiveProduct();
  if (product == nullptr || product->setRecord[record] == nullptr) return UnsupportedValue;
  return product->setRecord[record](words);
}

}  // namespace tavlyn
