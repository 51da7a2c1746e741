// The blocks of a card reader's configuration.
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "files/template_words.h"
#include "reader/layout.h"
#include "tools/wire/places.h"

namespace tavlyn::wire {
namespace {

using reader::BlockNumber;
using reader::layout::As;
using reader::layout::Packed;
using reader::layout::Way;
using namespace field;

// "TimeParms.iIDHoldTO"
std::string KeyOfField(FieldId id) {
  return std::string(std::string_view(kRecordNames[id.record]).substr(2)) + "." + FieldOf(id).name;
}

std::string BitsOf(const Packed& packed) {
  switch (packed.as) {
    case As::kFlag: return std::to_string(packed.shift);
    case As::kNibble: return std::to_string(packed.shift) + " to " + std::to_string(packed.shift + 3);
    case As::kByte: return packed.writeMask == 0xFF ? "all" : "all, written & " + HexByte(packed.writeMask);
  }
  return "";
}

Place PlaceOf(const Packed& packed) {
  std::string bits = BitsOf(packed);
  if (packed.way == Way::kReadOnly) bits += ", read only";
  const int step = FieldOf(packed.field).step;
  if (step > 1) bits += ", in steps of " + std::to_string(step);
  return {{BlockName(packed.block)},
          "b" + std::to_string(packed.byte),
          std::move(bits),
          KeyOfField(packed.field)};
}

// What the layout cannot say: one count after the other decides where the characters are, and the last block
// is only there for what the others have no room for.
struct Further {
  BlockNumber block;
  const char* byte;
  const char* bits;
  FieldId field;
};
constexpr const char* kCharacters = "b6 to b8";
constexpr const char* kInTurn = "all, lead characters first";
constexpr const char* kExcess = "all, what it exceeds 15 by";
constexpr Further kFurther[] = {
    {reader::kDisplayBlock, "b5", "0 to 1", IDDispParms2_iLeadChrCnt},
    {reader::kDisplayBlock, "b5", "4 to 5", IDDispParms3_iTrailChrCnt},
    {reader::kDisplayBlock, kCharacters, kInTurn, IDDispParms2_iLeadChr0},
    {reader::kDisplayBlock, kCharacters, kInTurn, IDDispParms2_iLeadChr1},
    {reader::kDisplayBlock, kCharacters, kInTurn, IDDispParms2_iLeadChr2},
    {reader::kDisplayBlock, kCharacters, kInTurn, IDDispParms3_iTrailChr0},
    {reader::kDisplayBlock, kCharacters, kInTurn, IDDispParms3_iTrailChr1},
    {reader::kDisplayBlock, kCharacters, kInTurn, IDDispParms3_iTrailChr2},
    {reader::kExtensionBlock, "b1", kExcess, IDBitCnts_iLeadParityBitCnt},
    {reader::kExtensionBlock, "b2", kExcess, IDBitCnts_iTrailParityBitCnt},
    {reader::kExtensionBlock, "b8", "all, of a reader with extended fields", IDDispParms_iExOutputFormat},
};

}  // namespace

std::string HexByte(unsigned byte) {
  char text[8];
  std::snprintf(text, sizeof text, "%02X", byte);
  return text;
}

std::string BlockName(unsigned number) { return "block " + std::to_string(number); }

std::vector<Place> ReaderPlaces() {
  std::vector<Place> places;
  places.reserve(std::size(reader::layout::kLayout) + std::size(kFurther) + 2);
  for (const Packed& packed : reader::layout::kLayout) places.push_back(PlaceOf(packed));
  for (const Further& one : kFurther) {
    places.push_back({{BlockName(one.block)}, one.byte, one.bits, KeyOfField(one.field)});
  }
  places.push_back({{BlockName(reader::kExtensionBlock)}, "b6", "1", kSavedOptions[1].keyword});
  places.push_back({{BlockName(reader::kExtensionBlock)}, "b7", "1", kSavedOptions[0].keyword});
  return places;
}

}  // namespace tavlyn::wire
