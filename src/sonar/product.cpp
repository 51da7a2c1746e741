// What a sonar sensor can do.
#include "core/product.h"

#include "core/state.h"
#include "core/version.h"
#include "sonar/product.h"

namespace tavlyn {
namespace {

// Answers 0 in place of UnsupportedValue.
template <typename... Parameters>
std::uint32_t Nothing(Parameters... /*parameters*/) {
  return 0;
}

// Other kinds without a beeper answer 0.
std::uint32_t HasNoBeeper(std::uint8_t /*count*/, std::int16_t /*longBeep*/) {
  return shared.UnsupportedValue;
}

constexpr Product WithRecords(Product product) {
  product.getRecord[kTimeParms] = Nothing<std::int16_t*>;
  product.setRecord[kTimeParms] = Nothing<const std::int16_t*>;
  product.getRecord[kLEDCtrl] = sonar::GetLedCtrl;
  product.setRecord[kLEDCtrl] = sonar::SetLedCtrl;
  return product;
}

}  // namespace

constexpr Product kSonarProduct = WithRecords({
    .kind = kSonar,
    .usb = sonar::kUsbIdentity,
    .hasIdByBytes = false,
    .search = sonar::Search,
    .searchPorts = nullptr,
    .portFailureTag = nullptr,
    .classify = nullptr,
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
    .answers = nullptr,
    .queryFirmwareWord = nullptr,
    .firmwareVersion = VersionWord,
    .getQueuedId = Nothing,
    .queuedIdPart = Nothing,
    .setRawPayload = Nothing,
    .rawReplyByte = Nothing,
    .checkArrival = sonar::CheckArrival,
    .getRecord = {},
    .setRecord = {},
});

}  // namespace tavlyn
