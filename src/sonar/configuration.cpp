// Reading and writing the configuration of a sonar sensor, and its stored defaults.
#include <algorithm>
#include <span>

#include "core/openings.h"
#include "core/pause.h"
#include "core/state.h"
#include "sonar/exchange.h"
#include "sonar/layout.h"
#include "sonar/product.h"
#include "sonar/records.h"

namespace tavlyn::sonar {
namespace {

constexpr std::uint32_t kReset = 1;  // SonarOpMark
constexpr std::uint32_t kAfterReset = 2000;

std::span<const Page> PagesOf(const Record& record) {
  return std::span(kPages).subspan(record.firstPage, record.pages);
}

bool FetchPage(const Page& page, Report& reply) {
  if (page.requested) return Ask(page.command, reply);
  if (!FetchReport(reply)) return false;
  AwaitSensor();
  return FetchReport(reply);
}

bool ReadRecords() {
  SonarWords& words = ActiveBlock().words;
  for (const Record& record : kRecords) {
    for (const Page& page : PagesOf(record)) {
      Report reply{};
      if (!FetchPage(page, reply)) return false;
      Unpack(page, reply, words);
    }
    std::copy_n(words.begin() + record.first, record.words, shared.sonarShadow.begin() + record.first);
  }
  return true;
}

void ClearDirty(tsSonarBlock& block) {
  for (const Record& record : kRecords) block.*record.changed = 0;
}

bool ReadIdentity() {
  tsDevEntry& entry = EntryOfActDev();
  Report reply{};
  if (!Ask(Command::kIdentity, reply)) return false;
  entry.LUID = static_cast<std::uint16_t>(reply[1] | reply[2] << 8);
  entry.DID = static_cast<std::uint16_t>(reply[3] | reply[4] << 8);
  entry.DID2 = static_cast<std::uint16_t>(reply[5] << 12 | (reply[6] & 15) << 8 | (reply[7] & 15) << 4 |
                                          (reply[8] & 15));
  entry.bLUIDDirty = 0;
  return true;
}

bool ReadAll() {
  if (!ReadRecords()) return false;
  tsSonarBlock& block = ActiveBlock();
  Sanitize(block.words);
  block.bParmsValid = 1;
  ClearDirty(block);
  return ReadIdentity();
}

// Leaves in page the last page that was sent.
bool WriteDirty(Report& page) {
  const tsSonarBlock& block = ActiveBlock();
  unsigned mask = 0;
  for (const Record& record : kRecords) {
    if (block.*record.changed == 0) continue;
    for (const Page& layout : PagesOf(record)) {
      Pack(layout, block.words, page);
      if (!Tell(layout.command, page)) return false;
    }
    mask |= ((1U << record.pages) - 1) << record.firstPage;
  }
  return Fire(Command::kCommit, static_cast<std::uint8_t>(mask));
}

// The bytes after the LUID are deliberately those of the last page.
bool WriteIdentity(Report& page) {
  tsDevEntry& entry = EntryOfActDev();
  page[1] = 0;
  page[2] = static_cast<std::uint8_t>(entry.LUID);
  page[3] = static_cast<std::uint8_t>(entry.LUID >> 8);
  if (!Tell(Command::kIdentity, page)) return false;
  entry.bLUIDDirty = 0;
  return true;
}

bool WriteAll() {
  Report page{};
  if (!WriteDirty(page)) return false;
  ClearDirty(ActiveBlock());
  return EntryOfActDev().bLUIDDirty == 0 || WriteIdentity(page);
}

std::uint32_t MoveDefaults(Command command) {
  EntryOfActDev().LastLibErr = 0;
  if (!Fire(command)) {
    EntryOfActDev().LastLibErr |= TAVLYN_ERR_RESET;
    return 0;
  }
  Pause(kAfterReset);
  return ReadCfg();
}

}  // namespace

std::uint32_t ReadCfg() {
  tsDevEntry& entry = EntryOfActDev();
  entry.LastLibErr = 0;
  if (ReadAll()) return 1;
  entry.LastLibErr |= TAVLYN_ERR_CONFIG_READ;
  return 0;
}

std::uint32_t WriteCfg() {
  tsDevEntry& entry = EntryOfActDev();
  entry.LastLibErr = 0;
  if (WriteAll()) return 1;
  entry.LastLibErr |= TAVLYN_ERR_CONFIG_WRITE;
  return 0;
}

std::uint32_t ResetFactoryDflts() {
  constexpr std::uint16_t kVersionBits = 0xFFF0;
  constexpr std::uint16_t kSetsIdleFlags = 0x400;
  ActiveBlock().SonarOpMark = kReset;
  if (MoveDefaults(Command::kFactoryDefaults) == 0) return 0;
  if ((EntryOfActDev().DID & kVersionBits) != kSetsIdleFlags) return 1;
  // Sensors of this version come out of a reset with idle flags that must not stay.
  ActiveBlock().words[FlagsI] = 0;
  ActiveBlock().bIdleChanged = 1;
  return WriteCfgLocked() != 0 ? ReadCfg() : 0;
}

std::uint32_t ResetUserDflts() {
  ActiveBlock().SonarOpMark = kReset;
  return MoveDefaults(Command::kRestoreUserDefaults);
}

std::uint32_t SaveUserDflts() { return MoveDefaults(Command::kSaveUserDefaults); }

}  // namespace tavlyn::sonar
