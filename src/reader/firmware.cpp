#include "reader/firmware.h"

#include <algorithm>

#include "core/openings.h"
#include "reader/fa_frames.h"
#include "reader/transactions.h"

namespace tavlyn {
namespace {

std::uint32_t HighFirst(const std::uint8_t* bytes) {
  return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
         static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

std::uint32_t WordByReports(std::int16_t cpu, std::int16_t index) {
  const Report request =
      CommandReport(command::kFirmwareWord, static_cast<std::uint8_t>(cpu), static_cast<std::uint8_t>(index));
  Report reply{};
  if (!SendReport(request)) return 0;
  if (!FetchReport(reply)) {
    EntryOfActDev().LastLibErr |= TAVLYN_ERR_COMMAND;
    return 0;
  }
  const bool echoed = std::equal(request.begin() + 1, request.begin() + 5, reply.begin() + 1);
  const std::uint32_t word = echoed ? HighFirst(&reply[5]) : 0;
  const auto row = static_cast<std::uint16_t>(cpu) % kCpus;
  const auto column = static_cast<std::uint16_t>(index) % kFirmwareWords;
  EntryOfActDev().FWVersion[row][column] = word;
  return word;
}

std::uint32_t WordByFa(std::int16_t cpu, std::int16_t index) {
  FaFrame frame(command::kFirmwareWord, static_cast<std::uint8_t>(cpu), static_cast<std::uint8_t>(index));
  if (!FaXfer(command::kFirmwareWord, frame)) return 0;
  // An answer to something else counts as the word 1, so that a row of words goes on behind it.
  if (frame.data[0] != 3 || frame.data[1] != static_cast<std::uint8_t>(cpu)) return 1;
  return HighFirst(&frame.data[3]);
}

}  // namespace

std::uint32_t QueryFirmwareWord(std::int16_t cpu, std::int16_t index) {
  if (EntryOfActDev().PlusState != kPlusReader) return 0;
  return OnSerialPort() ? WordByFa(cpu, index) : WordByReports(cpu, index);
}

std::uint32_t FirmwareVersion(std::uint16_t cpu, std::uint16_t index) {
  if (cpu >= kCpus || index >= kFirmwareWords || EntryOfActDev().PlusState != kPlusReader) return 0;
  return EntryOfActDev().FWVersion[cpu][index];
}

}  // namespace tavlyn
