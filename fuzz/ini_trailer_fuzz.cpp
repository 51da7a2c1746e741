// Checks and loads any file as a key-load file; a file with the right trailer must pass, and only such a file
// reaches the reader.
#include <array>
#include <cstdio>
#include <string>

#include "files/crc.h"
#include "fuzz/plugged_reader.h"

namespace tavlyn::fuzz {
namespace {

constexpr const char* kEndLine = "[EOF]\r\n";

std::string ValueOf(std::string_view text) {
  CRC crc;
  std::uint32_t sum = 0;
  crc.Begin();
  crc.Add(text);
  Require(crc.Compute(sum) == 0);
  std::array<char, 9> value{};
  std::snprintf(value.data(), value.size(), sum != 0 ? "%08X" : "%X", static_cast<unsigned>(sum));
  return value.data();
}

// Loads the file; returns the number of exchanges that it caused.
int LoadFile(const char* path) {
  PluggedReader plugged(sim::Reader::Plain());
  const int before = plugged.Exchanges();
  const std::uint32_t loaded = LoadIniFile(path);
  Require(loaded <= 1);
  const int exchanges = plugged.Exchanges() - before;
  Require(loaded == 0 || (exchanges > 0 && !plugged.reader->state.secure.storedItems.empty()));
  const bool refused = (GetLastLibErr() & TAVLYN_ERR_INTEGRITY) == TAVLYN_ERR_INTEGRITY;
  Require(refused == (CheckTamperedFile(path, 2) == 0));
  Require(!refused || exchanges == 0);
  return exchanges;
}

void Check(std::string_view text) {
  static const ScratchFile kFile;
  kFile.Fill(text);
  Require(CheckTamperedFile(kFile.Path(), 2) <= 1);
  Require(CheckTamperedFile(kFile.Path(), 1) == CheckTamperedFile(kFile.Path(), 0xFFFFFFFF));
  if (text.empty() || text.back() != '\n' || text.find('\0') != std::string_view::npos) return;
  if (text.find(kEndLine) != std::string_view::npos) return;
  const std::string sealed = std::string(text) + kEndLine + "iEndOfIniFile=" + ValueOf(text);
  kFile.Fill(sealed + "\r\n");
  Require(CheckTamperedFile(kFile.Path(), 2) == 1);
  LoadFile(kFile.Path());
  kFile.Fill(sealed + "\n");
  Require(CheckTamperedFile(kFile.Path(), 2) == 0);
  Require(LoadFile(kFile.Path()) == 0);
  kFile.Fill(sealed + "\r\n\r\n");
  Require(CheckTamperedFile(kFile.Path(), 2) == 0);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::Check(tavlyn::fuzz::TextOf(data, size));
  return 0;
}
