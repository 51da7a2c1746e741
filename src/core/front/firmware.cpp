#include "core/front/firmware.h"

#include "api.h"
#include "core/openings.h"

namespace tavlyn {

void ReadFirmwareWords(std::size_t rows) {
  const auto query = ActiveRoutine(&Product::queryFirmwareWord);
  for (std::size_t cpu = 0; cpu < rows; ++cpu) {
    auto& row = EntryOfActDev().FWVersion[cpu];
    row.fill(0);
    for (std::size_t index = 0; query != nullptr && index < kFirmwareWords; ++index) {
      row[index] = query(static_cast<std::int16_t>(cpu), static_cast<std::int16_t>(index));
      if (row[index] == 0) break;
    }
  }
}

}  // namespace tavlyn

using namespace tavlyn;

void SendGetFWVersion() {
  for (std::int16_t index = 0; index < shared.DevCnt; ++index) {
    // Deliberately resets the device that was active so far, as a connect does.
    EntryOfActDev().ActConfig = 0;
    shared.ActDev = index;
    ReadFirmwareWords(kCpus);
  }
  shared.ActDev = 0;
}

std::uint32_t GetFirmwareVersion(std::uint16_t cpu, std::uint16_t index) {
  if (!ActiveInRange()) return 0;
  const auto version = ActiveRoutine(&Product::firmwareVersion);
  return version != nullptr ? version(cpu, index) : UnsupportedSigned();
}
