// The words of a template file that both its writer and its reader use.
#pragma once

#include <array>
#include <cstdint>
#include <cstdio>

#include "core/fields.h"
#include "core/mirror.h"

namespace tavlyn {

inline constexpr const char* kTemplateTitle = "--- Tavlyn and OEM Reader Configuration Template File ---";
// Whether it stands at the head of the file, which is then read from its start again.
bool HasTitle(std::FILE* file);
inline constexpr const char* kSepBlockName = "sFldSepData";

// The two words that belong to no record; their keywords come before all others.
struct SavedOption {
  const char* keyword;
  const char* heading;
  std::int32_t tsCfgSlot::*word;
};
inline constexpr std::array kSavedOptions = {
    SavedOption{"AZERTYShiftlock", "AZERTYShiftLock", &tsCfgSlot::AZERTYShiftlock},
    SavedOption{"ExtendedPrecisionMath", "ExtendedPrecisionMath", &tsCfgSlot::ExtendedPrecisionMath},
};
inline constexpr const char* kOptionComment = "0= off, 1 = on";

}  // namespace tavlyn
