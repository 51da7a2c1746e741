// The blocks of a card reader's configuration.
#include <algorithm>
#include <string>
#include <vector>

#include "docs/protocol/page.h"
#include "reader/layout.h"
#include "tools/wire/places.h"

namespace tavlyn::page {
namespace {

// Words of records have the names of their types here.
std::string TypeName(const std::string& key) {
  return Code(key.find('.') == std::string::npos ? key : "ts" + key);
}

std::string BlockTable(reader::BlockNumber number) {
  std::vector<Row> rows;
  for (const wire::Place& place : wire::ReaderPlaces()) {
    if (place.commands.front() != wire::BlockName(number)) continue;
    rows.push_back({place.byte, place.bits, TypeName(place.key)});
  }
  std::ranges::stable_sort(rows, {}, [](const Row& row) { return row.front(); });
  return Table({"Byte", "Bits", "Field"}, rows);
}

}  // namespace

std::string FormatBlock() { return BlockTable(reader::kFormatBlock); }
std::string TimeBlock() { return BlockTable(reader::kTimeBlock); }
std::string DisplayBlock() { return BlockTable(reader::kDisplayBlock); }
std::string ExtensionBlock() { return BlockTable(reader::kExtensionBlock); }

}  // namespace tavlyn::page
