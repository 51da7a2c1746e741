// Writes every report that a reader can be asked for to a text file, for support.
#include <array>
#include <cstdio>

#include "api.h"
#include "core/openings.h"
#include "core/state.h"
#include "core/text.h"
#include "reader/configuration.h"
#include "reader/exchange.h"

namespace tavlyn::reader {
namespace {

constexpr std::array<std::uint8_t, 15> kDumped = {0x80, 0x81, 0x82, 0x83, 0x84, 0x85, 0x87, 0x88,
                                                  0x89, 0x8A, 0x8B, 0x8C, 0x8D, 0x8E, 0x8F};

void PrintBytes(std::FILE* file, const Report& report) {
  for (std::size_t at = 1; at < report.size(); ++at) std::fprintf(file, "%02X ", report[at]);
}

bool DumpCommand(std::FILE* file, std::uint8_t opcode) {
  Report report{0, opcode};
  if (!SendReport(report)) return false;
  std::fputs("Tx: ", file);
  PrintBytes(file, report);
  std::fputs("\nRx: ", file);
  if (!FetchReport(report)) return false;
  PrintBytes(file, report);
  std::fputs("\n", file);
  return true;
}

bool DumpConfigs(std::FILE* file, const tsDevEntry& entry) {
  for (unsigned config = 0; config <= entry.MaxConfig; ++config) {
    SelectConfig(static_cast<std::uint8_t>(config));
    UseConfig(static_cast<std::uint8_t>(config));
    if (entry.MaxConfig != 0) std::fprintf(file, "# Configuration %u\n", config + 1);
    for (const std::uint8_t opcode : kDumped) {
      if (!DumpCommand(file, opcode)) return false;
    }
  }
  return true;
}

bool Dump(std::FILE* file) {
  const tsDevEntry& entry = EntryOfActDev();
  const bool severalConfigs = entry.PlusState == kPlusReader && entry.MaxConfig != 0;
  std::fputs("# 8 byte USB Feature Reports\n", file);
  std::fputs(severalConfigs ? "# Reader Type TavlynPlus\n" : "# Reader Type Tavlyn\n", file);
  const std::uint8_t remembered = entry.ActConfig;
  const bool ok = DumpConfigs(file, entry);
  SelectConfig(remembered);
  if (ok) std::fputs("# End", file);
  return ok;
}

}  // namespace
}  // namespace tavlyn::reader

std::uint32_t DumpRawFeatureReports(const char* path) {
  using namespace tavlyn;
  using namespace tavlyn::reader;
  if (!ReaderIsActive()) return 0;
  File file = OpenFile(path, "w");
  if (file == nullptr) return 0;
  const bool ok = Dump(file.get());
  file.reset();
  if (!ok) std::remove(path);
  return ok ? 1 : 0;
}
