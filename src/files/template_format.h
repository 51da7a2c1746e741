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

// How the file shows a word.
enum class Save : std::uint8_t { kUnsaved, kNumber, kFlag };

struct SavedField {
  FieldId field;
  const char* keyword;
  Save save;
  const char* comment;
};

// In the order of the file's sections; a keyword that stands twice reaches its first place only.
inline constexpr std::array kSavedFields = {
#define SAVED(record, word, keyword, save, comment) \
  SavedField{{k##record, word}, #keyword, Save::save, comment},
#include "core/fields.inc"
};

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

inline constexpr std::array<const char*, kRecordCount> kRecordNames = {
    "tsIDBitCnts", "tsCfgFlags",     "tsIDDispParms",  "tsTimeParms", "tsCfgFlags2",
    "tsCfgFlags3", "tsIDDispParms2", "tsIDDispParms3", "tsLEDCtrl",   "tsBprRlyCtrl"};

}  // namespace tavlyn
