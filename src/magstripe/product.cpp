// What a magnetic-stripe reader can do.
#include "core/product.h"

#include "core/state.h"
#include "core/version.h"
#include "magstripe/product.h"

namespace tavlyn {
namespace {

constexpr Product WithRecords(Product product) {
  product.getRecord[kTimeParms] = magstripe::GetTimeParms;
  product.setRecord[kTimeParms] = magstripe::SetTimeParms;
  product.getRecord[kLEDCtrl] = magstripe::GetLedCtrl;
  product.setRecord[kLEDCtrl] = magstripe::SetLedCtrl;
  return product;
}

}  // namespace

constexpr Product kMagstripeProduct = WithRecords({
    .kind = kMagstripe,
    .usb = magstripe::kUsbIdentity,
    .search = magstripe::Search,
    .searchPorts = magstripe::SearchPorts,
    .portFailureTag = nullptr,
    .classify = nullptr,
    .readCfg = magstripe::ReadCfg,
    .writeCfg = magstripe::WriteCfg,
    .resetFactoryDflts = magstripe::ResetFactoryDflts,
    .resetUserDflts = nullptr,
    .saveUserDflts = nullptr,
    .saveFile = magstripe::SaveFile,
    .loadFile = magstripe::LoadFile,
    .getActiveId = magstripe::FetchId,
    .getActiveId32 = magstripe::FetchId32,
    .beep = magstripe::Beep,
    .answers = magstripe::Ping,
    .queryFirmwareWord = nullptr,
    .firmwareVersion = VersionWord,
    .getQueuedId = magstripe::FetchQueuedId,
    .queuedIdPart = magstripe::QueuedIdPart,
    .setRawPayload = magstripe::SetRawByte,
    .rawReplyByte = magstripe::RawReplyByte,
    .checkArrival = magstripe::CheckArrival,
    .keyTime = magstripe::GetKeyTime,
    .getRecord = {},
    .setRecord = {},
});

}  // namespace tavlyn
