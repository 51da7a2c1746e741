// What a magnetic-stripe reader can do.
#include "core/product.h"

#include "core/state.h"
#include "core/version.h"
#include "hid/arrival.h"
#include "magstripe/cfg_file.h"
#include "magstripe/configuration.h"
#include "magstripe/ids.h"
#include "magstripe/outputs.h"
#include "magstripe/raw_reports.h"
#include "magstripe/search.h"
#include "magstripe/time_parms.h"
#include "magstripe/transactions.h"

namespace tavlyn {
namespace {

constexpr Product WithRecords(Product product) {
  product.getRecord[kTimeParms] = SorbaneGetTimeParms;
  product.setRecord[kTimeParms] = SorbaneSetTimeParms;
  product.getRecord[kLEDCtrl] = SorbaneGetLedCtrl;
  product.setRecord[kLEDCtrl] = SorbaneSetLedCtrl;
  return product;
}

}  // namespace

constexpr Product kMagstripeProduct = WithRecords({
    .kind = kMagstripe,
    .search = SearchMagstripes,
    .searchPorts = SearchMagstripePorts,
    .portFailureTag = nullptr,
    .classify = nullptr,
    .readCfg = SorbaneReadCfg,
    .writeCfg = SorbaneWriteCfg,
    .resetFactoryDflts = SorbaneReset,
    .resetUserDflts = nullptr,
    .saveUserDflts = nullptr,
    .saveFile = SaveSorbaneFile,
    .loadFile = LoadSorbaneFile,
    .getActiveId = SorbaneGetActiveId,
    .getActiveId32 = SorbaneGetActiveId32,
    .beep = SorbaneBeep,
    .answers = SorbanePing,
    .queryFirmwareWord = nullptr,
    .firmwareVersion = VersionWord,
    .getQueuedId = SorbaneGetQueuedId,
    .queuedIdPart = SorbaneQueuedIdPart,
    .setRawPayload = SorbaneSetRawByte,
    .rawReplyByte = SorbaneRawReplyByte,
    .checkArrival = CheckMagstripeArrival,
    .keyTime = SorbaneKeyTime,
    .getRecord = {},
    .setRecord = {},
});

}  // namespace tavlyn
