// What a card reader can do.
#include "core/product.h"

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

constexpr Product kReaderProduct = {
    .kind = kReader,
    .usb = kReaderUsb,
    .hasTunnel = true,
    .keyTimesInRecord = true,
    .portFailureTag = "tavlyn_ComConnectPort",
    .search = SearchReaders,
    .searchPorts = SearchReaderPorts,
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
    .getRecord = GetRecord,
    .setRecord = SetRecord,
};

}  // namespace tavlyn
