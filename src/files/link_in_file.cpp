// The link that a magstripe reader's configuration file names.
#include <array>
#include <cstdio>
#include <string_view>

#include "api.h"
#include "core/state.h"
#include "core/text.h"

using namespace tavlyn;

namespace {

constexpr std::uint32_t kUnknownLink = 65535;

// "USB" wins when the text names both.
std::uint32_t LinkNamedIn(const char* path) {
  std::array<char, 257> bytes;
  const File file = OpenFile(path, "r");
  if (file == nullptr) return kUnknownLink;
  const std::string_view text(bytes.data(), std::fread(bytes.data(), 1, bytes.size(), file.get()));
  const std::size_t at = text.find("Interface:");
  if (at == std::string_view::npos) return kUnknownLink;
  if (text.find("USB", at) != std::string_view::npos) return kByReports;
  return text.find("SERIAL", at) != std::string_view::npos ? kBySerialPort : kUnknownLink;
}

}  // namespace

std::uint32_t ReadDevTypeFromFile(const char* path) {
  if (!ActiveInRange()) return shared.UnsupportedValue;
  switch (EntryOfActDev().ProductKind) {
    case kMagstripe: return LinkNamedIn(path);
    case kSonar: return 0;
    default: return shared.UnsupportedValue;
  }
}
