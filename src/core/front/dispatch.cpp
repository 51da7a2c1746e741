// Exports that only call the family of the active device.
#include <algorithm>

#include "api.h"
#include "core/lock.h"
#include "core/openings.h"
#include "core/text.h"
#include "core/trace.h"

namespace tavlyn {
namespace {

template <typename Words>
std::uint32_t Get(Record record, Words* words) {
  return GetActiveRecord(record, reinterpret_cast<std::int16_t*>(words));
}

template <typename Words>
std::uint32_t Set(Record record, const Words* words) {
  return SetActiveRecord(record, reinterpret_cast<const std::int16_t*>(words));
}

std::uint32_t TickNow() { return static_cast<std::uint32_t>(platform::TheHost().clock.Tick()); }

}  // namespace
}  // namespace tavlyn

using namespace tavlyn;

std::uint32_t GetFlags(tsCfgFlags* record) { return Get(kCfgFlags, record); }
std::uint32_t SetFlags(const tsCfgFlags* record) { return Set(kCfgFlags, record); }
std::uint32_t GetFlags2(tsCfgFlags2* record) { return Get(kCfgFlags2, record); }
std::uint32_t SetFlags2(const tsCfgFlags2* record) { return Set(kCfgFlags2, record); }
std::uint32_t GetFlags3(tsCfgFlags3* record) { return Get(kCfgFlags3, record); }
std::uint32_t SetFlags3(const tsCfgFlags3* record) { return Set(kCfgFlags3, record); }
std::uint32_t GetIDBitCnts(tsIDBitCnts* record) { return Get(kIDBitCnts, record); }
std::uint32_t SetIDBitCnts(const tsIDBitCnts* record) { return Set(kIDBitCnts, record); }
std::uint32_t GetIDDispParms(tsIDDispParms* record) { return Get(kIDDispParms, record); }
std::uint32_t SetIDDispParms(const tsIDDispParms* record) { return Set(kIDDispParms, record); }
std::uint32_t GetIDDispParms2(tsIDDispParms2* record) { return Get(kIDDispParms2, record); }
std::uint32_t SetIDDispParms2(const tsIDDispParms2* record) { return Set(kIDDispParms2, record); }
std::uint32_t GetIDDispParms3(tsIDDispParms3* record) { return Get(kIDDispParms3, record); }
std::uint32_t SetIDDispParms3(const tsIDDispParms3* record) { return Set(kIDDispParms3, record); }
std::uint32_t GetTimeParms(tsTimeParms* record) { return Get(kTimeParms, record); }
std::uint32_t SetTimeParms(const tsTimeParms* record) { return Set(kTimeParms, record); }
std::uint32_t GetLEDCtrl(tsLEDCtrl* record) { return Get(kLEDCtrl, record); }
std::uint32_t SetLEDCtrl(const tsLEDCtrl* record) { return Set(kLEDCtrl, record); }
std::uint32_t GetBprRlyCtrl(tsBprRlyCtrl* record) { return Get(kBprRlyCtrl, record); }
std::uint32_t SetBprRlyCtrl(const tsBprRlyCtrl* record) { return Set(kBprRlyCtrl, record); }

std::uint32_t ReadCfg() { return ReadCfgLocked(); }

std::uint32_t WriteCfg() { return WriteCfgLocked(); }

std::uint32_t ResetFactoryDflts() {
  constexpr const char* kTag = "ResetFactoryDflts";
  LogLine(kTag, "ENTER");
  if (ActiveRoutine(&Product::resetFactoryDflts) == nullptr) LogLine(kTag, kFailed);
  const std::uint32_t result = Dispatch(&Product::resetFactoryDflts);
  LogLine(kTag, "EXIT");
  return result;
}

std::uint32_t ResetUserDflts() { return Dispatch(&Product::resetUserDflts); }
std::uint32_t SaveUserDflts() { return Dispatch(&Product::saveUserDflts); }

std::uint32_t WriteDevCfgToFile(const char* path) { return Dispatch(&Product::saveFile, path); }
std::uint32_t ReadDevCfgFmFile(const char* path) { return Dispatch(&Product::loadFile, path); }

std::uint32_t writeDevCfgToFile_char(std::int16_t index, std::uint8_t character) {
  return CollectPath(shared.buffers.savePath, index, character, WriteDevCfgToFile);
}

std::uint32_t readDevCfgFmFile_char(std::int16_t index, std::uint8_t character) {
  return CollectPath(shared.buffers.loadPath, index, character, ReadDevCfgFmFile);
}

std::uint32_t GetQueuedID(std::uint16_t first, std::int16_t second) {
  return Dispatch(&Product::getQueuedId, first, second);
}

std::uint32_t GetQueuedID_index(std::int16_t index) {
  // Not by Dispatch: this is the one value that may be wider than 16 bits.
  const auto part = ActiveRoutine(&Product::queuedIdPart);
  return part != nullptr ? part(index) : shared.UnsupportedValue;
}

std::uint16_t GetMaxConfig() { return HighestConfig(); }
std::uint16_t GetActConfig() { return ActiveConfig(); }
std::uint32_t SetActConfig(std::uint8_t index) { return UseConfig(index) ? 1 : 0; }

std::uint32_t BeepNow(std::uint8_t count, std::int16_t longBeep) {
  const Locked lock;
  // Unlike other dispatches this one returns 0 without a device or a routine.
  const auto beep = ActiveRoutine(&Product::beep);
  return beep != nullptr ? beep(count, longBeep) : 0;
}

std::uint32_t Ping() {
  const std::uint32_t start = TickNow();
  const auto answers = ActiveRoutine(&Product::answers);
  if (answers == nullptr || !answers()) return start;
  const std::uint32_t taken = TickNow() - start;
  return taken == 0 ? 1 : std::min<std::uint32_t>(taken, 65535);
}
