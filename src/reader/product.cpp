// What a card reader can do.
#include "reader/product.h"

#include "files/template_file.h"

namespace tavlyn {

constexpr Product kReaderProduct = {
    .kind = kReader,
    .usb = reader::kUsbIdentity,
    .hasTunnel = true,
    .keyTimesInRecord = true,
    .portFailureTag = "tavlyn_ComConnectPort",
    .search = reader::Search,
    .searchPorts = reader::SearchPorts,
    .classify = reader::Classify,
    .readCfg = reader::ReadCfg,
    .writeCfg = reader::WriteCfg,
    .resetFactoryDflts = reader::ResetFactoryDflts,
    .resetUserDflts = reader::ResetUserDflts,
    .saveUserDflts = reader::SaveUserDflts,
    .saveFile = SaveTemplateFile,
    .loadFile = LoadTemplateFile,
    .getActiveId = reader::FetchId,
    .getActiveId32 = reader::FetchId32,
    .beep = reader::Beep,
    .answers = reader::Ping,
    .queryFirmwareWord = reader::QueryFirmwareWord,
    .firmwareVersion = reader::FirmwareVersion,
    .getQueuedId = reader::FetchQueuedId,
    .queuedIdPart = reader::QueuedIdPart,
    .setRawPayload = reader::SetRawByte,
    .rawReplyByte = reader::RawReplyByte,
    .checkArrival = reader::CheckArrival,
    .getRecord = reader::GetRecord,
    .setRecord = reader::SetRecord,
};

}  // namespace tavlyn
