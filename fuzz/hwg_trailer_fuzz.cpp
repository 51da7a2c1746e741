// Checks any file as a template or BLE file; a file with a fresh trailer must pass.
#include <algorithm>
#include <cctype>
#include <string>

#include "api.h"
#include "files/crc.h"
#include "fuzz/memory_file.h"

namespace tavlyn::fuzz {
namespace {

// Bytes that change where the covered text ends. A NUL ends a piece, and the pieces of the check and of the
// sum differ; a carriage return may change the mode; the name of a marker may be anywhere in a piece.
bool IsOrdinary(std::string text) {
  if (text.empty() || text.back() != '\n' || text.find('\0') != std::string::npos) return false;
  if (text.find('\r') != std::string::npos) return false;
  std::ranges::transform(text, text.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text.find("iendofhwgfile") == std::string::npos;
}

void Check(std::string_view text) {
  MemoryFile::Fill(text);
  Require(CheckTamperedFile(MemoryFile::Path(), 0) <= 1);
  CRC crc;
  Require(crc.AppendSecureTrailer(MemoryFile::Path()) == 0);
  const std::uint32_t intact = CheckTamperedFile(MemoryFile::Path(), 0);
  const bool ordinary = IsOrdinary(std::string(text));
  Require(!ordinary || intact == 1);
  if (!ordinary) return;
  std::string changed = MemoryFile::Text();
  changed.front() = static_cast<char>(changed.front() ^ 1);
  MemoryFile::Fill(changed);
  Require(CheckTamperedFile(MemoryFile::Path(), 0) == 0);
  MemoryFile::Fill(std::string(text) + "/--- iEndOfHwgFile\n");
  Require(crc.AppendHwgTrailer(MemoryFile::Path()) == 1);
  Require(CheckTamperedFile(MemoryFile::Path(), 0) == 1);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Check(tavlyn::fuzz::TextOf(data, size));
  return 0;
}
