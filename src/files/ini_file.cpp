// Key-load files: items for the protected memory, three lines each, which are loaded after an integrity test.
//
//   [Blob1]                 any number
//   hdr=02 01 04 00         header and payload in hexadecimal, low bytes
//   data=11 22 33 44
//   …
//   [EOF]                   then the trailer
//
// Every line ends in CR LF, and there is nothing between the items.
#include <algorithm>
#include <array>
#include <span>
#include <string_view>

#include "api.h"
#include "core/state.h"
#include "core/text.h"
#include "core/wipe.h"
#include "files/integrity.h"
#include "files/items.h"

using namespace tavlyn;

namespace {

constexpr std::size_t kLineRoom = 256;
using IniLines = Lines<kLineRoom>;

// Room for the bytes of two lines.
struct Item {
  Wiped<std::array<std::uint8_t, kLineRoom>> bytes;
  std::size_t count = 0;
};

bool IsSectionHead(std::string_view line) {
  constexpr std::string_view kHead = "[Blob";
  if (!line.starts_with(kHead)) return false;
  line.remove_prefix(kHead.size());
  line.remove_prefix(std::min(line.find_first_not_of("0123456789"), line.size()));
  return line == "]\r\n";
}

// A line feed that stands alone ends the bytes. A carriage return with it counts as a byte, 0, which the
// check of the length then catches.
bool TakeBytesOf(IniLines& lines, std::string_view key, Item& item) {
  std::string_view line;
  if (!lines.Next(line)) return false;
  Tokens tokens(line);
  if (tokens.Next("=") != key) return false;
  Tokens bytes(tokens.Next("="));
  for (std::string_view byte = bytes.Next(" "); !byte.empty() && byte != "\n"; byte = bytes.Next(" ")) {
    unsigned long long value = 0;
    Scan(byte, "%llx", value);
    item.bytes[item.count++] = static_cast<std::uint8_t>(value);
  }
  return true;
}

// The result is that of the last item alone; items before it may have failed. A line out of place ends the
// load.
bool LoadItems(const char* path) {
  const File file = OpenFile(path, "rb");
  if (file == nullptr) return false;
  IniLines lines(file.get());
  std::string_view line;
  bool written = false;
  while (lines.Next(line) && line != "[EOF]\r\n") {
    Item item;
    if (!IsSectionHead(line) || !TakeBytesOf(lines, "hdr", item) || !TakeBytesOf(lines, "data", item))
      return false;
    const auto bytes = std::span<const std::uint8_t>(item.bytes).first(item.count);
    written = IsWholeItem(bytes) && WriteItem(bytes);
  }
  return written;
}

}  // namespace

std::uint32_t LoadIniFile(const char* path) {
  if (!PassesIntegrity(path, kIniTrailer)) return 0;
  if (!ActiveInRange()) return 0;
  EntryOfActDev().LastLibErr = 0;
  if (EntryOfActDev().ProductKind != kReader) return 0;
  return LoadItems(path) ? 1 : 0;
}
