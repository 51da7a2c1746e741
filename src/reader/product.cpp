// What a card reader can do.
#include "core/product.h"

#include <utility>

#include "core/state.h"
#include "files/template_file.h"
#include "reader/banks.h"
#include "reader/cfg_read.h"
#include "reader/cfg_write.h"
#include "reader/classify.h"
#include "reader/firmware.h"
#include "reader/id_fetch.h"
#include "reader/outputs.h"
#include "reader/queued_id.h"
#include "reader/raw_payload.h"
#include "reader/records.h"
#include "reader/search.h"

namespace tavlyn {
namespace {

template <Record kRecord>
std::uint32_t Get(std::int16_t* words) {
  return GetRecord(kRecord, words);
}

template <Record kRecord>
std::uint32_t Set(const std::int16_t* words) {
  return SetRecord(kRecord, words);
}

template <std::size_t... kRecords>
constexpr Product WithRecords(Product product, std::index_sequence<kRecords...> /*records*/) {
  product.getRecord = {Get<static_cast<Record>(kRecords)>...};
  product.setRecord = {Set<static_cast<Record>(kRecords)>...};
  return product;
}

}  // namespace

constexpr Product kReaderProduct = WithRecords(
    {
        .kind = kReader,
        .usb = kReaderUsb,
        .hasTunnel = true,
        .keyTimesInRecord = true,
        .search = SearchReaders,
        .searchPorts = SearchReaderPorts,
        .portFailureTag = "tavlyn_ComConnectPort",
        .classify = ClassifyReader,
        .readCfg = ReadReaderCfg,
        .writeCfg = WriteReaderCfg,
        .resetFactoryDflts = ResetReader,
        .resetUserDflts = RestoreUserDefaults,
        .saveUserDflts = SaveUserDefaults,
        .saveFile = SaveTemplateFile,
        .loadFile = LoadTemplateFile,
        .getActiveId = FetchId64,
        .getActiveId32 = FetchId256,
        .beep = Beep,
        .answers = PingReader,
        .queryFirmwareWord = QueryFirmwareWord,
        .firmwareVersion = FirmwareVersion,
        .getQueuedId = FetchQueuedId,
        .queuedIdPart = QueuedIdPart,
        .setRawPayload = SetRawCommand,
        .rawReplyByte = RawReplyByte,
        .checkArrival = CheckReaderArrival,
        .getRecord = {},
        .setRecord = {},
    },
    std::make_index_sequence<kRecordCount>());

}  // namespace tavlyn
