// The blocks of a card reader's configuration.
#include <string>
#include <vector>

#include "docs/protocol/page.h"
#include "reader/layout.h"

namespace tavlyn::page {
namespace {

using reader::BlockNumber;
using reader::layout::As;
using reader::layout::Packed;
using reader::layout::Way;

std::string PackedBits(const Packed& packed) {
  switch (packed.as) {
    case As::kFlag: return std::to_string(packed.shift);
    case As::kNibble: return std::to_string(packed.shift) + " to " + std::to_string(packed.shift + 3);
    case As::kByte: return packed.writeMask == 0xFF ? "all" : "all, written & " + Hex(packed.writeMask);
  }
  return "";
}

Row RowOf(const Packed& packed) {
  const Field& field = FieldOf(packed.field);
  std::string bits = PackedBits(packed);
  if (packed.way == Way::kReadOnly) bits += ", read only";
  if (field.step > 1) bits += ", in steps of " + std::to_string(field.step);
  return {"b" + std::to_string(packed.byte), bits, FieldName(packed.field)};
}

std::string BlockTable(BlockNumber number) {
  std::vector<Row> rows;
  for (const Packed& packed : reader::layout::kLayout) {
    if (packed.block == number) rows.push_back(RowOf(packed));
  }
  return Table({"Byte", "Bits", "Field"}, rows);
}

}  // namespace

std::string FormatBlock() { return BlockTable(reader::kFormatBlock); }
std::string TimeBlock() { return BlockTable(reader::kTimeBlock); }
std::string DisplayBlock() { return BlockTable(reader::kDisplayBlock); }

}  // namespace tavlyn::page
