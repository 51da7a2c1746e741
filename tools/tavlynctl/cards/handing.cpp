#include "tools/tavlynctl/cards/handing.h"

#include <algorithm>

#include "tools/tavlynctl/cards/layouts.h"
#include "tools/tavlynctl/config/fields.h"

namespace tavlyn::ctl {
namespace {

// Whatever else changes a card, so that no layout may fit.
struct Reversal {
  FieldId field;
  const char* note;
};
constexpr Reversal kReversals[] = {
    {field::CfgFlags2_bRevWiegBits, "the reader reverses the order of the bits (bRevWiegBits)"},
    {field::CfgFlags2_bRevBytes, "the reader reverses the order of the bytes (bRevBytes)"}};

int HandingWord(FieldId field) { return std::max<int>(ReadRecord(field.record)[field.word], 0); }

}  // namespace

Handing ActiveHanding() try {
  Handing handing{HandingWord(field::IDBitCnts_iLeadParityBitCnt),
                  HandingWord(field::IDBitCnts_iTrailParityBitCnt),
                  kMostCardBits,
                  {}};
  if (HandingWord(field::CfgFlags_bStripFac) != 0) handing.idBits = HandingWord(field::IDBitCnts_iIDBitCnt);
  for (const Reversal& one : kReversals) {
    if (HandingWord(one.field) != 0) handing.notes.emplace_back(one.note);
  }
  return handing;
} catch (const Failure&) {
  // A reader in text whose configuration was not read has cards all the same.
  Handing handing;
  handing.notes.emplace_back("the reader's configuration was not read: it may strip bits");
  return handing;
}

}  // namespace tavlyn::ctl
