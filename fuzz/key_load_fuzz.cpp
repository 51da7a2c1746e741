// Loads any items from a key-load file whose trailer is right, into a reader that repeats them, and one that
// refuses some. The first byte says which exchange it refuses; the rest is the items.
#include <string>

#include "fuzz/input.h"
#include "fuzz/kept_readers.h"
#include "fuzz/sealed.h"

namespace tavlyn::fuzz {
namespace {

constexpr std::size_t kLongestItem = 255;

void CheckStored(const sim::Reader& reader) {
  for (const auto& [header, bytes] : reader.state.secure.storedItems) Require(bytes.size() <= kLongestItem);
}

void LoadItems(std::uint8_t refused, std::string_view items) {
  static KeptReaders kept({sim::Reader::Plain()});
  sim::Reader& reader = kept.Use(0);
  reader.faults.Restart();
  if (refused != 0) reader.faults.RefuseAt(refused, 6);
  MemoryFile::Fill(SealedItems(items));
  const std::uint32_t loaded = LoadIniFile(MemoryFile::Path());
  Require(loaded <= 1);
  Require(loaded == 0 || !reader.state.secure.storedItems.empty());
  CheckStored(reader);
  // The same file again has the same result, unless something was refused.
  const auto stored = reader.state.secure.storedItems;
  if (refused != 0) return;
  Require(LoadIniFile(MemoryFile::Path()) == loaded);
  Require(reader.state.secure.storedItems == stored);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Input input(data, size);
  const std::uint8_t refused = input.Byte();
  const auto items = input.Rest();
  tavlyn::fuzz::LoadItems(refused, tavlyn::fuzz::TextOf(items.data(), items.size()));
  return 0;
}
