// Reading and writing the configuration of a magnetic-stripe reader, and its factory defaults.
#include <algorithm>
#include <cstring>

#include "api.h"
#include "core/pause.h"
#include "core/state.h"
#include "magstripe/exchange.h"
#include "magstripe/layout.h"
#include "magstripe/product.h"

namespace tavlyn::magstripe {
namespace {

// The reader is busy for this long after a store.
constexpr std::uint32_t kBusyTime = 1100;
constexpr std::size_t kPartNumberAt = 3;

void AwaitStore() { Pause(kBusyTime); }

// User fields are named by the letters from a on.
char LetterOf(std::size_t field) { return static_cast<char>('a' + field); }

void StorePartNumber(const Reply& reply, tsDevEntry& entry) {
  std::memset(entry.PartNumber, 0, sizeof entry.PartNumber);
  std::copy(reply.begin() + kPartNumberAt, reply.end(), entry.PartNumber);
  char* const end = entry.PartNumber + reply.size() - kPartNumberAt;
  char* const stop = std::find(entry.PartNumber, end, '\r');
  if (stop != end) *stop = ' ';
}

void ReadVersion(tsDevEntry& entry) {
  Payload bytes;
  if (!Ask(kVersion, bytes)) return;
  entry.DID = static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
  entry.DID2 = static_cast<std::uint16_t>(bytes[2] << 8 | bytes[3]);
}

bool FieldPartDone(const FieldPart& part, bool done) {
  if (!done && part.failureLeavesError) EntryOfActDev().LastLibErr = TAVLYN_ERR_FIELD_PART;
  return done;
}

bool ReadFields(tsSorbaneCfg& cfg) {
  for (std::size_t field = 0; field < kUserFields; ++field) {
    for (const FieldPart& part : kFieldParts) {
      Payload bytes;
      if (!FieldPartDone(part, Ask(part.read, bytes, {LetterOf(field)}))) return false;
      UnpackField(part, bytes, cfg.UserField[field]);
    }
  }
  return true;
}

bool WriteFields(const tsSorbaneCfg& cfg) {
  for (std::size_t field = 0; field < kUserFields; ++field) {
    for (const FieldPart& part : kFieldParts) {
      const Payload bytes = PackField(part, cfg.UserField[field]);
      if (!FieldPartDone(part, Tell(part.write, {LetterOf(field)}, bytes))) return false;
    }
  }
  return true;
}

// A reader that does not answer here keeps the settings that the host has.
void ReadSystem(tsDevEntry& entry) {
  Payload bytes;
  if (!Ask(kReadSystem, bytes)) return;
  UnpackSystem(bytes, entry.SorbaneBlock.Cfg);
  entry.LUID = entry.SorbaneBlock.Cfg.LUID;
}

bool ReadLeds(tsSorbaneCfg& cfg) {
  Payload bytes;
  if (!Ask(kReadLeds, bytes)) return false;
  UnpackLeds(bytes, cfg);
  return true;
}

}  // namespace

std::uint32_t ReadCfg() {
  tsDevEntry& entry = EntryOfActDev();
  entry.LastLibErr = 0;
  Reply reply;
  if (!Identify(reply)) {
    entry.LastLibErr = TAVLYN_ERR_CONFIG_READ;
    return 0;
  }
  StorePartNumber(reply, entry);
  ReadVersion(entry);
  tsSorbaneCfg& cfg = entry.SorbaneBlock.Cfg;
  if (!ReadFields(cfg)) return 0;
  ReadSystem(entry);
  return ReadLeds(cfg) ? 1 : 0;
}

std::uint32_t WriteCfg() {
  tsDevEntry& entry = EntryOfActDev();
  tsSorbaneCfg& cfg = entry.SorbaneBlock.Cfg;
  cfg.LUID = entry.LUID;
  entry.LastLibErr = 0;
  const bool sent = Tell(kOpenWrite) && WriteFields(cfg) && Tell(kWriteSystem, {}, PackSystem(cfg)) &&
                    Tell(kWriteLeds, {}, PackLeds(cfg));
  if (!sent) return 0;
  const bool committed = Tell(kCommit);
  AwaitStore();
  return committed ? 1 : 0;
}

std::uint32_t ResetFactoryDflts() {
  EntryOfActDev().LastLibErr = 0;
  if (!Tell(kFactoryReset)) {
    EntryOfActDev().LastLibErr |= TAVLYN_ERR_RESET;
    return 0;
  }
  AwaitStore();
  return ReadCfg();
}

}  // namespace tavlyn::magstripe
