// Loads any BLE file into a reader. The rest of the input is the file; the first byte says what is put around
// it: the title, the lines up to the block of one kind, the end of the block, a trailer.
#include <string>

#include "files/crc.h"
#include "fuzz/kept_readers.h"
#include "fuzz/memory_file.h"

namespace tavlyn::fuzz {
namespace {

enum Around : std::uint8_t { kTitle = 1, kHead = 2, kOfKey = 4, kTail = 8, kNoTrailer = 16 };

std::string FileAround(std::uint8_t around, std::string_view text) {
  const auto has = [around](Around part) { return (around & part) != 0; };
  std::string file;
  if (has(kTitle)) file = "/--- Tavlyn and OEM Reader Configuration Template File ---\n";
  if (has(kHead)) file += std::string(7, '\n') + "BEGIN sFldBleData" + (has(kOfKey) ? "2\n" : "1\n");
  file += text;
  if (has(kTail)) file += "\nEND\n";
  return file + "/--- iEndOfHwgFile\n";
}

// What a load stored must come back from a save of the same reader.
void CheckSaved(sim::Reader& reader, bool key) {
  const sim::BleMemory stored = reader.state.secure.storedBle;
  Require((key ? WriteBLEKeyToFile(MemoryFile::Path()) : WriteBLEDataToFile(MemoryFile::Path())) == 1);
  Require(CheckTamperedFile(MemoryFile::Path(), 0) == 1);
  reader.state.secure.ble = reader.state.secure.storedBle = {};
  Require((key ? WriteBLEKeyToReader(MemoryFile::Path()) : WriteBLEDataToReader(MemoryFile::Path())) == 1);
  Require(reader.state.secure.storedBle == stored);
}

void LoadBle(std::uint8_t around, std::string_view text) {
  static KeptReaders kept({sim::Reader::Plain()});
  sim::Reader& reader = kept.Use(0);
  for (const bool key : {false, true}) {
    MemoryFile::Fill(FileAround(around, text));
    if ((around & kNoTrailer) == 0) Require(CRC().AppendHwgTrailer(MemoryFile::Path()) == 1);
    const bool intact = CheckTamperedFile(MemoryFile::Path(), 0) == 1;
    const int before = reader.faults.Exchanges();
    const std::uint32_t loaded =
        key ? WriteBLEKeyToReader(MemoryFile::Path()) : WriteBLEDataToReader(MemoryFile::Path());
    Require(loaded == 0 || loaded == 1);
    Require(reader.faults.Exchanges() == before + (loaded == 0 ? 0 : key ? 70 : 210));
    Require(intact || loaded == 0);
    Require(loaded == 1 || GetLastLibErr() == (intact ? TAVLYN_ERR_BLE_WRITE : TAVLYN_ERR_INTEGRITY) ||
            GetLastLibErr() == (TAVLYN_ERR_BLE_WRITE | TAVLYN_ERR_INTEGRITY));
    if (loaded == 1) CheckSaved(reader, key);
  }
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  tavlyn::fuzz::LoadBle(data[0], tavlyn::fuzz::TextOf(data + 1, size - 1));
  return 0;
}
