// Loads any file into a magnetic-stripe reader's mirror: nothing beyond the mirror may change, and what a
// save then writes must load as the same.
#include <cstring>

#include "fuzz/connected.h"
#include "fuzz/memory_file.h"

namespace tavlyn::fuzz {
namespace {

// The bytes around the settings; no file may change one.
constexpr std::uint32_t kGuard = 0xA5A5A5A5;

void LoadInto(std::string_view text) {
  const Loaded library;
  shared.DevCnt = 1;
  tsDevEntry& entry = DevTable[0];
  entry.ProductKind = kMagstripe;
  entry.SorbaneBlock.bOpened = kGuard;
  entry.DID = 0x1234;
  entry.DID2 = 0x5678;

  MemoryFile::Fill(text);
  Require(ReadDevCfgFmFile(MemoryFile::Path()) <= 1);
  Require(entry.SorbaneBlock.bOpened == kGuard && entry.DID == 0x1234 && entry.DID2 == 0x5678);
  const tsSorbaneCfg loaded = entry.SorbaneBlock.Cfg;
  const std::uint16_t luid = entry.LUID;
  Require(loaded.IdSel.Track == kIdSelAtLoad.Track && loaded.LUID == 0);
  for (const tsSorbaneField& field : loaded.UserField) Require(field.Enable <= 1 && field.IgnoreLRC <= 1);

  Require(WriteDevCfgToFile(MemoryFile::Path()) == 1);
  entry.SorbaneBlock.Cfg.UserField = {};
  entry.LUID = 0;
  Require(ReadDevCfgFmFile(MemoryFile::Path()) == 1);
  Require(std::memcmp(&loaded, &entry.SorbaneBlock.Cfg, sizeof loaded) == 0 && entry.LUID == luid);
}

}  // namespace
}  // namespace tavlyn::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  tavlyn::fuzz::LoadInto(tavlyn::fuzz::TextOf(data, size));
  return 0;
}
