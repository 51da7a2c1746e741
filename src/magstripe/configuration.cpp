#include "magstripe/configuration.h"

#include <algorithm>
#include <cstring>

#include "api.h"
#include "core/pause.h"
#include "core/state.h"
#include "magstripe/transactions.h"
#include "magstripe/wire.h"

namespace tavlyn {
namespace {

// The reader is busy that long behind a store.
constexpr std::uint32_t kBusyTime = 1100;
constexpr std::size_t kPartNumberAt = 3;

void AwaitStore() { Pause(kBusyTime); }

// User fields are named by the letters from a on.
char LetterOf(std::size_t field) { return static_cast<char>('a' + field); }

void StorePartNumber(const SorbaneReply& reply, tsDevEntry& entry) {
  std::memset(entry.PartNumber, 0, sizeof entry.PartNumber);
  std::copy(reply.begin() + kPartNumberAt, reply.end(), entry.PartNumber);
  char* const end = entry.PartNumber + reply.size() - kPartNumberAt;
  char* const stop = std::find(entry.PartNumber, end, '\r');
  if (stop != end) *stop = ' ';
}

void ReadVersion(tsDevEntry& entry) {
  std::array<std::uint8_t, 4> bytes;
  if (!SorbaneAsk(sorbane::kVersion, bytes)) return;
  entry.DID = static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
  entry.DID2 = static_cast<std::uint16_t>(bytes[2] << 8 | bytes[3]);
}

bool FieldPartDone(const SorbaneFieldPart& part, bool done) {
  if (!done && part.failureLeavesError) EntryOfActDev().LastLibErr = TAVLYN_ERR_FIELD_PART;
  return done;
}

bool ReadFields(tsSorbaneCfg& cfg) {
  for (std::size_t field = 0; field < kSorbaneFields; ++field) {
    for (const SorbaneFieldPart& part : kSorbaneFieldParts) {
      SorbanePayload bytes{};
      const auto received = std::span(bytes).first(part.read.received);
      if (!FieldPartDone(part, SorbaneAsk(part.read, received, {LetterOf(field)}))) return false;
      UnpackField(part, bytes, cfg.UserField[field]);
    }
  }
  return true;
}

bool WriteFields(const tsSorbaneCfg& cfg) {
  for (std::size_t field = 0; field < kSorbaneFields; ++field) {
    for (const SorbaneFieldPart& part : kSorbaneFieldParts) {
      const SorbanePayload bytes = PackField(part, cfg.UserField[field]);
      if (!FieldPartDone(part, SorbaneTell(part.write, {LetterOf(field)}, bytes))) return false;
    }
  }
  return true;
}

// A reader that does not answer here keeps the settings that the host has.
void ReadSystem(tsDevEntry& entry) {
  SorbanePayload bytes{};
  if (!SorbaneAsk(sorbane::kReadSystem, std::span(bytes).first(sorbane::kReadSystem.received))) return;
  UnpackSystem(bytes, entry.SorbaneBlock.Cfg);
  entry.LUID = entry.SorbaneBlock.Cfg.LUID;
}

bool ReadLeds(tsSorbaneCfg& cfg) {
  SorbanePayload bytes{};
  if (!SorbaneAsk(sorbane::kReadLeds, std::span(bytes).first(sorbane::kReadLeds.received))) return false;
  UnpackLeds(bytes, cfg);
  return true;
}

}  // namespace

std::uint32_t SorbaneReadCfg() {
  tsDevEntry& entry = EntryOfActDev();
  entry.LastLibErr = 0;
  SorbaneReply reply;
  if (!SorbaneIdentify(reply)) {
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

std::uint32_t SorbaneWriteCfg() {
  tsDevEntry& entry = EntryOfActDev();
  tsSorbaneCfg& cfg = entry.SorbaneBlock.Cfg;
  cfg.LUID = entry.LUID;
  entry.LastLibErr = 0;
  const bool sent = SorbaneTell(sorbane::kOpenWrite) && WriteFields(cfg) &&
                    SorbaneTell(sorbane::kWriteSystem, {}, PackSystem(cfg)) &&
                    SorbaneTell(sorbane::kWriteLeds, {}, PackLeds(cfg));
  if (!sent) return 0;
  const bool committed = SorbaneTell(sorbane::kCommit);
  AwaitStore();
  return committed ? 1 : 0;
}

std::uint32_t SorbaneReset() {
  EntryOfActDev().LastLibErr = 0;
  if (!SorbaneTell(sorbane::kFactoryReset)) {
    EntryOfActDev().LastLibErr |= TAVLYN_ERR_RESET;
    return 0;
  }
  AwaitStore();
  return SorbaneReadCfg();
}

}  // namespace tavlyn
