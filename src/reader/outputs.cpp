#include "reader/outputs.h"

#include <algorithm>

#include "core/configurations.h"
#include "core/trace.h"
#include "reader/blocks.h"
#include "reader/fa_frames.h"
#include "reader/transactions.h"

namespace tavlyn {
namespace {

constexpr std::uint8_t kLongBeeps = 0x80;

std::uint8_t BeepCode(std::uint8_t count, bool longBeep) {
  const std::uint8_t code = std::clamp<std::uint8_t>(count, 1, 5);
  if (!longBeep) return code;
  return code < 2 ? static_cast<std::uint8_t>(code | kLongBeeps) : std::uint8_t{kLongBeeps | 2};
}

bool WriteBlock(BlockNumber number, const Block& block) {
  const auto opcode = static_cast<std::uint8_t>(0x80 + number);
  if (OnSerialPort()) {
    FaFrame frame(command::kWriteBlock, opcode, number);
    std::ranges::copy(block, frame.data.begin());
    return FaXfer(command::kWriteBlock, frame);
  }
  Report data{};
  std::ranges::copy(block, data.begin() + 1);
  return SendReport(CommandReport(command::kWriteBlock, opcode)) && SendReport(data);
}

}  // namespace

bool WriteDispBlock(tsCfgSlot& slot) {
  const bool written = WriteBlock(kDisplayBlock, BuildBlock(kDisplayBlock, slot));
  if (!written && !OnSerialPort()) {
    ActiveEntry().LastLibErr |= TAVLYN_ERR_CONFIG_WRITE;
    LogLine("WrtIDFrmtParms2", "ERROR CODE 0x00040000");
  }
  return written;
}

std::uint32_t Beep(std::uint8_t count, std::int16_t longBeep) {
  ActiveEntry().LastLibErr = 0;
  ReplyBytes reply;
  return Ask(command::kBeep, TAVLYN_ERR_COMMAND, reply, BeepCode(count, longBeep != 0)) ? 1 : 0;
}

bool IsFastStoreReader() {
  ActiveEntry().LastLibErr = 0;
  constexpr std::uint16_t kUnknown = 65535;
  std::uint16_t volume = kUnknown;
  if (OnSerialPort()) {
    FaFrame frame(command::kReadVolume, 0, 0);
    if (FaXfer(command::kReadVolume, frame)) volume = frame.data[0];
  } else {
    Report reply{};
    const bool answered = FeatureXfer(command::kReadVolume, reply) == Xfer::kDone;
    if (!answered) ActiveEntry().LastLibErr |= TAVLYN_ERR_COMMAND;
    // The report ID counts, so a reader with report ID 1 is always a fast one.
    if (std::ranges::any_of(reply, [](std::uint8_t byte) { return byte != 0; })) volume = reply[3];
  }
  // Readers with two or four configurations are fast whether they know the command or not.
  return HighestConfig() == 1 || HighestConfig() == 3 || volume < kUnknown;
}

}  // namespace tavlyn
