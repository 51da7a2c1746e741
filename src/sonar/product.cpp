// What a sonar sensor can do.
#include "core/product.h"

#include "core/state.h"
#include "core/version.h"
#include "sonar/product.h"

namespace tavlyn {
namespace {

// Returns 0 instead of UnsupportedValue.
template <typename... Parameters>
std::uint32_t Nothing(Parameters... /*parameters*/) {
  return 0;
}

// Without this routine BeepNow would return 0.
std::uint32_t HasNoBeeper(std::uint8_t /*count*/, std::int16_t /*longBeep*/) {
  return shared.UnsupportedValue;
}

std::uint32_t GetRecord(Record record, std::int16_t* words) {
  if (record == kTimeParms) return 0;
  return record == kLEDCtrl ? sonar::GetLedCtrl(words) : shared.UnsupportedValue;
}

std::uint32_t SetRecord(Record record, const std::int16_t* words) {
  if (record == kTimeParms) return 0;
  return record == kLEDCtrl ? sonar::SetLedCtrl(words) : shared.UnsupportedValue;
}

}  // namespace

constexpr Product kSonarProduct = {
    .kind = kSonar,
    .usb = sonar::kUsbIdentity,
    .hasIdByBytes = false,
    .search = sonar::Search,
    .readCfg = sonar::ReadCfg,
    .writeCfg = sonar::WriteCfg,
    .resetFactoryDflts = sonar::ResetFactoryDflts,
    .resetUserDflts = sonar::ResetUserDflts,
    .saveUserDflts = sonar::SaveUserDflts,
    .saveFile = sonar::SaveFile,
    .loadFile = sonar::LoadFile,
    .getActiveId = sonar::FetchId,
    .getActiveId32 = sonar::FetchId,
    .beep = HasNoBeeper,
    .firmwareVersion = VersionWord,
    .getQueuedId = Nothing,
    .queuedIdPart = Nothing,
    .setRawPayload = Nothing,
    .rawReplyByte = Nothing,
    .checkArrival = sonar::CheckArrival,
    .getRecord = GetRecord,
    .setRecord = SetRecord,
};

}  // namespace tavlyn
