// Checks and loads any file as a key-load file; a file with the right trailer must pass, and only such a file
// reaches the reader.
#include <string>

#include "fuzz/kept_readers.h"
#include "fuzz/sealed.h"

namespace tavlyn::fuzz {
namespace {

// Loads the file; returns the number of exchanges that it caused.
int LoadFile(const char* path) {
  static KeptReaders kept({sim::Reader::Plain()});
  const sim::Reader& reader = kept.Use(0);
  const int before = reader.faults.Exchanges();
  const std::uint32_t loaded = LoadIniFile(path);
  Require(loaded <= 1);
  const int exchanges = reader.faults.Exchanges() - before;
  Require(loaded == 0 || (exchanges > 0 && !reader.state.secure.storedItems.empty()));
  const bool refused = (GetLastLibErr() & TAVLYN_ERR_INTEGRITY) == TAVLYN_ERR_INTEGRITY;
  Require(refused == (CheckTamperedFile(path, 2) == 0));
  Require(!refused || exchanges == 0);
  return exchanges;
}

void Check(std::string_view text) {
  MemoryFile::Fill(text);
  Require(CheckTamperedFile(MemoryFile::Path(), 2) <= 1);
  Require(CheckTamperedFile(MemoryFile::Path(), 1) == CheckTamperedFile(MemoryFile::Path(), 0xFFFFFFFF));
  if (text.empty() || text.back() != '\n' || text.find('\0') != std::string_view::npos) return;
  if (text.find(kEndLine) != std::string_view::npos) return;
  const std::string sealed = AlmostSealed(text);
  MemoryFile::Fill(sealed + "\r\n");
  Require(CheckTamperedFile(MemoryFile::Path(), 2) == 1);
  LoadFile(MemoryFile::Path());
  MemoryFile::Fill(sealed + "\n");
  Require(CheckTamperedFile(MemoryFile::Path(), 2) == 0);
  Require(LoadFile(MemoryFile::Path()) == 0);
  MemoryFile::Fill(sealed + "\r\n\r\n");
  Require(CheckTamperedFile(MemoryFile::Path(), 2) == 0);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Check(tavlyn::fuzz::TextOf(data, size));
  return 0;
}
