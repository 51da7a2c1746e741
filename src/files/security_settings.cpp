// Hash keys and the flag for enhanced security, which travel with the next commit.
#include <algorithm>

#include "api.h"
#include "core/openings.h"

using namespace tavlyn;

namespace {

constexpr std::uint8_t kEnhanced = 0x80;

// In slot 0, whichever configuration is active.
std::uint8_t& EnhanceByte() { return EntryOfActDev().CfgSlot[0].sFldSepData[kEnhanceSecurityAt]; }

}  // namespace

std::uint32_t SetHashKeyData(const std::uint8_t* data) {
  if (!ReaderIsActive()) return shared.UnsupportedValue;
  if (data == nullptr) return 0;
  tsCfgSlot& slot = EntryOfActDev().ActiveSlot();
  for (auto& key : slot.HashKeyData) {
    std::copy_n(data, key.size(), key.begin());
    data += key.size();
  }
  slot.bDirtySep = 1;
  EntryOfActDev().LastLibErr = 0;
  return 1;
}

std::uint32_t GetEnhanceSecurityFlag() {
  if (!ReaderIsActive()) return UnsupportedSigned();
  return EnhanceByte() & kEnhanced;
}

void SetEnhanceSecurityFlag(std::uint32_t on) {
  if (!ReaderIsActive()) return;
  EnhanceByte() = on != 0 ? kEnhanced : std::uint8_t{0};
  EntryOfActDev().CfgSlot[0].bDirtySep = 1;
}
