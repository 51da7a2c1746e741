// The words of a template file, and of the trailers that files may have.
#pragma once

#include <array>
#include <cstdint>

#include "core/mirror.h"

namespace tavlyn {

inline constexpr const char* kTemplateTitle = "--- Tavlyn and OEM Reader Configuration Template File ---";

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

inline constexpr const char* kBlockBegin = "BEGIN";
inline constexpr const char* kBlockEnd = "END";
inline constexpr const char* kSepBlockName = "sFldSepData";

// The lines after the separator data of each configuration, where a reader has several.
inline constexpr const char* kCardTypeWord = "CardType:";
inline constexpr const char* kCardPriorityWord = "CardPriority:";
inline constexpr const char* kNextConfigMark = "##NEXTCONFIG##";

// The names of the sums in trailers.
inline constexpr const char* kHwgSumName = "iEndOfHwgFile";
inline constexpr const char* kIniSumName = "iEndOfIniFile";

}  // namespace tavlyn
