#include "reader/outputs.h"

#include <algorithm>

#include "api.h"
#include "core/state.h"
#include "core/trace.h"
#include "reader/ascii.h"
#include "reader/exchange.h"
#include "reader/layout.h"
#include "reader/product.h"

namespace tavlyn::reader {
namespace {

constexpr std::uint8_t kLongBeeps = 0x80;

std::uint8_t BeepCode(std::uint8_t count, bool longBeep) {
  const std::uint8_t code = std::clamp<std::uint8_t>(count, 1, 5);
  if (!longBeep) return code;
  return code < 2 ? static_cast<std::uint8_t>(code | kLongBeeps) : std::uint8_t{kLongBeeps | 2};
}

constexpr std::uint16_t kNoVolume = 65535;

}  // namespace

Outcome AskVolume() {
  EntryOfActDev().LastLibErr = 0;
  const Outcome volume = Exchange(command::kReadVolume);
  if (ReportLost(volume.xfer)) EntryOfActDev().LastLibErr |= TAVLYN_ERR_COMMAND;
  return volume;
}

bool WriteDispBlock(tsCfgSlot& slot) {
  const Xfer written = Tell(command::kWriteBlock, BuildBlock(kDisplayBlock, slot), {kDisplayBlock});
  if (written == Xfer::kNotSent) {
    EntryOfActDev().LastLibErr |= TAVLYN_ERR_CONFIG_WRITE;
    LogLine("WrtIDFrmtParms2", "ERROR CODE 0x00040000");
  }
  return written == Xfer::kDone;
}

std::uint32_t Beep(std::uint8_t count, std::int16_t longBeep) {
  EntryOfActDev().LastLibErr = 0;
  const std::uint8_t code = BeepCode(count, longBeep != 0);
  if (InAscii()) {
    AsciiBeep(code & 7, code >= kLongBeeps);
    return 1;
  }
  ReplyBytes reply;
  return Ask(command::kBeep, TAVLYN_ERR_COMMAND, reply, {code}) ? 1 : 0;
}

}  // namespace tavlyn::reader

using namespace tavlyn;
using namespace tavlyn::reader;

std::uint32_t GetBeeperVolume() {
  if (!ActiveInRange()) return kNoVolume;
  const Outcome volume = AskVolume();
  return volume.xfer == Xfer::kDone && !volume.blank ? volume.reply[0] : kNoVolume;
}

std::uint32_t SetBeeperVolume(std::uint16_t volume) {
  if (!ActiveInRange()) return shared.UnsupportedValue;
  EntryOfActDev().LastLibErr = 0;
  ReplyBytes reply;
  const bool answered =
      Ask(command::kWriteVolume, TAVLYN_ERR_COMMAND, reply, {static_cast<std::uint8_t>(volume)});
  if (OnSerialPort()) return answered ? 1 : 0;
  return answered && std::ranges::any_of(reply, [](std::uint8_t byte) { return byte != 0; }) ? 1 : 0;
}
