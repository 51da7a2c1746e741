#include "files/integrity.h"

#include "api.h"
#include "core/state.h"
#include "files/template_file.h"

namespace tavlyn {

bool PassesIntegrity(const char* path, std::uint32_t kind) {
  if (IsIntact(path, kind)) return true;
  EntryOfActDev().LastLibErr |= TAVLYN_ERR_INTEGRITY;
  return false;
}

}  // namespace tavlyn

using namespace tavlyn;

std::uint32_t CheckTamperedFile(const char* path, std::uint32_t kind) { return IsIntact(path, kind) ? 1 : 0; }

std::uint32_t ReadDevCfgFromSecureFile(const char* path) {
  if (!PassesIntegrity(path, kHwgTrailer)) return 0;
  // Without an active card reader nothing is loaded, and the result is deliberately 1 all the same.
  if (!ActiveInRange()) return 1;
  EntryOfActDev().LastLibErr = 0;
  if (EntryOfActDev().ProductKind == kReader && LoadTemplateFile(path) == 0) return shared.UnsupportedValue;
  return 1;
}

std::uint32_t WriteDevCfgToSecureFile(const char* path) {
  if (!ActiveInRange()) return 1;
  EntryOfActDev().LastLibErr = 0;
  if (EntryOfActDev().ProductKind != kReader) return 1;
  if (SaveTemplateFile(path) == 0) return shared.UnsupportedValue;
  if (CRC().AppendSecureTrailer(path) == 0) return 1;
  EntryOfActDev().LastLibErr |= TAVLYN_ERR_INTEGRITY;
  return shared.UnsupportedValue;
}
