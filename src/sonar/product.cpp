// What a sonar sensor can do.
#include "core/product.h"

#include "core/state.h"
#include "core/version.h"
#include "hid/arrival.h"
#include "sonar/parameters.h"
#include "sonar/range.h"
#include "sonar/records.h"
#include "sonar/search.h"
#include "sonar/text_file.h"

namespace tavlyn {
namespace {

// Answers 0 in place of UnsupportedValue.
template <typename... Parameters>
std::uint32_t Nothing(Parameters... /*parameters*/) {
  return 0;
}

constexpr Product WithRecords(Product product) {
  product.getRecord[kTimeParms] = Nothing<std::int16_t*>;
  product.setRecord[kTimeParms] = Nothing<const std::int16_t*>;
  product.getRecord[kLEDCtrl] = sonar::GetLeds;
  product.setRecord[kLEDCtrl] = sonar::SetLeds;
  return product;
}

}  // namespace

constexpr Product kSonarProduct = WithRecords({
    .kind = kSonar,
    .search = sonar::SearchSensors,
    .searchPorts = nullptr,
    .portFailureTag = nullptr,
    .classify = nullptr,
    .readCfg = sonar::ReadParameters,
    .writeCfg = sonar::WriteParameters,
    .resetFactoryDflts = sonar::ResetToFactory,
    .resetUserDflts = sonar::ResetToUserDefaults,
    .saveUserDflts = sonar::SaveAsUserDefaults,
    .saveFile = sonar::SaveFile,
    .loadFile = sonar::LoadFile,
    .getActiveId = sonar::RangeAsId,
    .getActiveId32 = sonar::RangeAsId,
    .beep = nullptr,
    .answers = nullptr,
    .queryFirmwareWord = nullptr,
    .firmwareVersion = VersionWord,
    .getQueuedId = Nothing,
    .queuedIdPart = Nothing,
    .setRawPayload = Nothing,
    .rawReplyByte = Nothing,
    .checkArrival = CheckSonarArrival,
    .getRecord = {},
    .setRecord = {},
});

}  // namespace tavlyn
