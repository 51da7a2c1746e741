// What a magnetic-stripe reader can do.
#include "core/product.h"

#include "core/state.h"
#include "core/version.h"
#include "magstripe/product.h"

namespace tavlyn {
namespace {

std::uint32_t GetRecord(Record record, std::int16_t* words) {
  if (record == kTimeParms) return magstripe::GetTimeParms(words);
  return record == kLEDCtrl ? magstripe::GetLedCtrl(words) : shared.UnsupportedValue;
}

std::uint32_t SetRecord(Record record, const std::int16_t* words) {
  if (record == kTimeParms) return magstripe::SetTimeParms(words);
  return record == kLEDCtrl ? magstripe::SetLedCtrl(words) : shared.UnsupportedValue;
}

}  // namespace

constexpr Product kMagstripeProduct = {
    .kind = kMagstripe,
    .usb = magstripe::kUsbIdentity,
    .search = magstripe::Search,
    .searchPorts = magstripe::SearchPorts,
    .readCfg = magstripe::ReadCfg,
    .writeCfg = magstripe::WriteCfg,
    .resetFactoryDflts = magstripe::ResetFactoryDflts,
    .saveFile = magstripe::SaveFile,
    .loadFile = magstripe::LoadFile,
    .getActiveId = magstripe::FetchId,
    .getActiveId32 = magstripe::FetchId32,
    .beep = magstripe::Beep,
    .answers = magstripe::Ping,
    .firmwareVersion = VersionWord,
    .getQueuedId = magstripe::FetchQueuedId,
    .queuedIdPart = magstripe::QueuedIdPart,
    .setRawPayload = magstripe::SetRawByte,
    .rawReplyByte = magstripe::RawReplyByte,
    .checkArrival = magstripe::CheckArrival,
    .keyTime = magstripe::GetKeyTime,
    .getRecord = GetRecord,
    .setRecord = SetRecord,
};

}  // namespace tavlyn
